// Defines what the handles of the C interface point to, and reads them.
#ifndef ORVANEL_C_INTERFACE_HANDLES_H
#define ORVANEL_C_INTERFACE_HANDLES_H

#include <string>

#include "c_interface/call.h"
#include "eye/eye.h"
#include "orvanel/c_interface.h"
#include "targets/plane.h"

struct orvanel_eye {
  orvanel::eye::Eye eye;
  std::string warnings;
};

struct orvanel_plane {
  orvanel::targets::Plane samples;
  orvanel_plane_facts facts{};  // but its texts and samples
  std::string warnings, notes;
};

#endif  // ORVANEL_C_INTERFACE_HANDLES_H
