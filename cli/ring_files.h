// Names the files and planes of rings.
#ifndef ORVANEL_CLI_RING_FILES_H
#define ORVANEL_CLI_RING_FILES_H

#include <string>

#include "base/layers.h"
#include "base/units.h"
#include "targets/ring_request.h"

namespace orvanel::cli {

// "ring_acuity-0.4951_gap-right", the beginning of the names of a ring's files and planes, by the acuity drawn. Rings
// of less than 5000 samples have unique names.
std::string RingStem(double drawnAcuity, Gap gap);

// The same before the ring is drawn. Throws RingTooSmall.
std::string RingStem(Millimetres pupil, const RingRequest& request);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_RING_FILES_H
