// One sheet with the user's picture, as given and as seen; there must be one.
#ifndef ORVANEL_CLI_PICTURES_PICTURE_SHEET_H
#define ORVANEL_CLI_PICTURES_PICTURE_SHEET_H

#include "cli/png.h"
#include "cli/results.h"

namespace orvanel::cli {

ColourPicture DrawPictureSheet(const Results& results);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_PICTURES_PICTURE_SHEET_H
