// Creates models by their kind.
#include "models/model.h"

#include "models/classic_model.h"

namespace orvanel::models {

std::unique_ptr<Model> MakeModel(ModelKind kind) {
  switch (kind) {
    case ModelKind::kClassic:
      break;
  }
  return std::make_unique<ClassicModel>();
}

std::span<const FocusMethod> FocusMethodsOf(ModelKind kind) {
  switch (kind) {
    case ModelKind::kClassic:
      break;
  }
  return ClassicModel::FocusMethods();
}

}  // namespace orvanel::models
