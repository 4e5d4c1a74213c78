// Scratch planes of an engine, allocated once so that the operations need no planes of their own.
#ifndef ORVANEL_OPTICS_WORKSPACE_H
#define ORVANEL_OPTICS_WORKSPACE_H

#include "orvanel/optics_engine.h"

namespace orvanel {

// Every operation may use these; none finds in them what another left.
struct OpticsEngine::Workspace {
  explicit Workspace(int n) : objectReal(n), objectImag(n), productReal(n), productImag(n) {}

  GridPlane objectReal;  // what a transform starts from
  GridPlane objectImag;
  GridPlane productReal;  // what a filter makes of it
  GridPlane productImag;
};

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_WORKSPACE_H
