// Creates models by their kind.
#include "models/model.h"

#include "models/adapters/classic_model.h"
#include "models/adapters/physical_model.h"

namespace orvanel::models {

std::unique_ptr<Model> MakeModel(const ModelRequest& request) {
  if (request.kind == ModelKind::kPhysical) return std::make_unique<PhysicalModel>(request.physical);
  return std::make_unique<ClassicModel>();
}

std::span<const FocusMethod> FocusMethodsOf(ModelKind kind) {
  return kind == ModelKind::kPhysical ? PhysicalModel::FocusMethods() : ClassicModel::FocusMethods();
}

}  // namespace orvanel::models
