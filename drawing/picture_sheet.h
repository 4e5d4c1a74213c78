// One sheet with the user's picture, as given and as seen; there must be one.
#ifndef ORVANEL_DRAWING_PICTURE_SHEET_H
#define ORVANEL_DRAWING_PICTURE_SHEET_H

#include "base/layers.h"
#include "evaluation/results.h"
#include "files/pictures/png.h"

namespace orvanel::drawing {

ColourPicture DrawPictureSheet(const Results& results);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_PICTURE_SHEET_H
