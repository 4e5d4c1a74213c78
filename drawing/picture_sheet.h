// Draws one sheet with the user's picture and its retinal images; the results must have a picture.
#ifndef ORVANEL_DRAWING_PICTURE_SHEET_H
#define ORVANEL_DRAWING_PICTURE_SHEET_H

#include "base/layers.h"
#include "evaluation/simulated_eye.h"
#include "files/pictures/png.h"

namespace orvanel::drawing {

ColourPicture DrawPictureSheet(const SimulatedEye& simulated);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_PICTURE_SHEET_H
