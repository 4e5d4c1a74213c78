// The user's picture as an eye sees it.
#ifndef ORVANEL_EVALUATION_RETINAL_PICTURE_H
#define ORVANEL_EVALUATION_RETINAL_PICTURE_H

#include <vector>

#include "base/layers.h"
#include "evaluation/simulation.h"
#include "targets/object_picture.h"

namespace orvanel::evaluation {

struct SeenPicture {
  ObjectPicture object;
  // One plane for each channel of the object; light, 0 to 1.
  std::vector<Plane> seen;          // as the library shows its star with total light kept: squared, clipped at 1
  std::vector<Plane> contrastKept;  // the same without the square: near to blurred light that adds up
};

// Each channel goes through the eye by itself. With contrast kept, each keeps its total light; the squares of three
// channels keep the light that they have together, so that grey stays grey.
SeenPicture SeePicture(Millimetres pupil, const LibraryCoefficients& coefficients, ObjectPicture object);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_RETINAL_PICTURE_H
