// Defines a request for a Landolt ring (broken ring), the target of acuity charts.
#ifndef ORVANEL_TARGETS_RING_REQUEST_H
#define ORVANEL_TARGETS_RING_REQUEST_H

#include "base/layers.h"

namespace orvanel::targets {

enum class Gap { kDown = 1, kUp = 2, kRight = 3, kLeft = 4 };

const char* Word(Gap gap);

struct RingRequest {
  double acuity;  // decimal, on the library scale
  Gap gap;
};

}  // namespace orvanel::targets

#endif  // ORVANEL_TARGETS_RING_REQUEST_H
