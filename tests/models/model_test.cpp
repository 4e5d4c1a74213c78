// Tests creating models by their kind.
#include "models/model.h"

#include <gtest/gtest.h>

#include "models/adapters/classic_model.h"

namespace orvanel::models {
namespace {

TEST(Model, OfTheClassicKindIsTheClassicModel) {
  const std::unique_ptr<Model> model = MakeModel({ModelKind::kClassic, {}});
  EXPECT_NE(dynamic_cast<ClassicModel*>(model.get()), nullptr);
}

}  // namespace
}  // namespace orvanel::models
