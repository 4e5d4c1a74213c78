// Names the models.
#ifndef ORVANEL_MODELS_MODEL_KIND_H
#define ORVANEL_MODELS_MODEL_KIND_H

#include <string_view>

#include "base/layers.h"

namespace orvanel::models {

// kPhysical: Fourier optics of the eye at true scale, with a stated error.
// kClassic: the numbers of the eight exports, on their own scale.
enum class ModelKind { kPhysical, kClassic };

constexpr std::string_view Word(ModelKind kind) { return kind == ModelKind::kPhysical ? "physical" : "classic"; }

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_MODEL_KIND_H
