// Any object plane as the eye sees it.
#include <algorithm>

#include "optics/retinal_image.h"
#include "optics/workspace.h"

namespace orvanel {

int OpticsEngine::PatternRetinalImage(double* image, const double* pattern, int n) {
  if (n != gridSize) return 0;
  GridPlane& object = workspace_->objectReal;
  GridPlane& imaginary = workspace_->objectImag;
  std::copy_n(pattern, object.size(), object.begin());
  std::fill(imaginary.begin(), imaginary.end(), 0.0);
  FilterThroughEye(object.data(), imaginary.data(), image, Total(object.data(), gridSize));
  return 1;
}

}  // namespace orvanel
