// Names the files and planes of rings.
#ifndef ORVANEL_CLI_RING_FILES_H
#define ORVANEL_CLI_RING_FILES_H

#include <string>

#include "base/layers.h"
#include "cli/result_files.h"

namespace orvanel::cli {

// "ring_acuity-0.4951_gap-right", the beginning of the names of a ring's files and planes, by the acuity that the
// classic model draws. Rings of less than 5000 samples have unique names.
std::string RingStem(double drawnAcuity, Gap gap);

// The same before the ring is drawn, by either model. The physical model draws rings of exactly the acuity requested.
// Throws RingTooSmall.
std::string RingStem(const Request& request, const RingRequest& ring);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_RING_FILES_H
