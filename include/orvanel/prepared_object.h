// Defines an object with its precomputed spectrum, for the retinal images of many eyes.
#ifndef ORVANEL_PREPARED_OBJECT_H
#define ORVANEL_PREPARED_OBJECT_H

#include "orvanel/grid_plane.h"

namespace orvanel {

// An object that OpticsEngine::Prepare has transformed, for engines of the same grid in the same process. By default it
// is empty. Moves, but does not copy. Several threads may read it at once.
class PreparedObject {
 public:
  PreparedObject() = default;

  // True if there is no object.
  bool empty() const { return first_.data() == nullptr; }

 private:
  friend class OpticsEngine;

  GridPlane first_;   // the spectrum, as the kernels keep it; on other grids its real parts
  GridPlane second_;  // on other grids its imaginary parts
  double total_ = 0.0;
};

}  // namespace orvanel

#endif  // ORVANEL_PREPARED_OBJECT_H
