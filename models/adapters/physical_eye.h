// Converts the canonical eye to the eye of the physical model.
#ifndef ORVANEL_MODELS_ADAPTERS_PHYSICAL_EYE_H
#define ORVANEL_MODELS_ADAPTERS_PHYSICAL_EYE_H

#include "base/layers.h"
#include "eye/eye.h"
#include "models/physical/eye.h"
#include "models/physical_settings.h"

namespace orvanel::models {

// The same modes in micrometres over the same pupil, and the reference wavelength where it is known. The range of pupil
// and wavelengths is not checked here. Throws OrderAboveHighest where a term above radial order 10 is not 0.
physical::Eye PhysicalEyeOf(const Eye& eye);

// The same with the pupil that the settings describe: outline, Stiles-Crawford effect and achromatic axis.
physical::Eye PhysicalEyeOf(const Eye& eye, const PhysicalSettings& settings);

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_ADAPTERS_PHYSICAL_EYE_H
