// Computes the retinal image of the user's picture.
#ifndef ORVANEL_EVALUATION_RETINAL_PICTURE_H
#define ORVANEL_EVALUATION_RETINAL_PICTURE_H

#include "base/layers.h"
#include "evaluation/evaluator.h"

namespace orvanel::evaluation {

// For the eye evaluated last, with Need::kImages. Each channel goes through the eye by itself. With contrast kept, each
// keeps its total light; the squares of three channels keep the light that they have together, so that grey stays grey.
SeenPicture SeePicture(Evaluator& evaluator, ObjectPicture object);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_RETINAL_PICTURE_H
