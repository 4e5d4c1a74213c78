// Defines a section through the MTF.
#ifndef ORVANEL_MODELS_SECTION_H
#define ORVANEL_MODELS_SECTION_H

#include <array>

#include "base/layers.h"
#include "orvanel/orvanel.h"

namespace orvanel::models {

// From frequency 0 upwards, along a row or a column of the MTF.
using Section = std::array<double, ORVANEL_SECTION_SAMPLES>;

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_SECTION_H
