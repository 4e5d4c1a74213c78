// An object that many eyes are to look at, with the half of the work that no eye changes done once.
#ifndef ORVANEL_PREPARED_OBJECT_H
#define ORVANEL_PREPARED_OBJECT_H

#include "orvanel/grid_plane.h"

namespace orvanel {

// Made by OpticsEngine::Prepare, for engines of the same grid in the same process; without an object before. Moves, but
// does not copy. Reading it from several threads at once is fine.
class PreparedObject {
 public:
  PreparedObject() = default;

  // Whether there is an object.
  bool empty() const { return first_.data() == nullptr; }

 private:
  friend class OpticsEngine;

  GridPlane first_;   // the spectrum, as the kernels keep it; on other grids its real parts
  GridPlane second_;  // on other grids its imaginary parts
  double total_ = 0.0;
};

}  // namespace orvanel

#endif  // ORVANEL_PREPARED_OBJECT_H
