// Tests that every method of every model has a unique name, and its measure a text.
#include "models/focus.h"

#include <gtest/gtest.h>

#include <set>
#include <string_view>

#include "models/model.h"

namespace orvanel::models {
namespace {

TEST(Focus, MethodsHaveNamesOfTheirOwn) {
  const auto methods = FocusMethodsOf(ModelKind::kClassic);
  ASSERT_FALSE(methods.empty());
  std::set<std::string_view> names;
  for (const FocusMethod& method : methods) names.insert(method.name);
  EXPECT_EQ(names.size(), methods.size());
}

TEST(Focus, ALargeStrehlRatioIsBestAndASmallDeviation) {
  EXPECT_FALSE(TextOf(FocusMeasure::kStrehl).smallIsBest);
  EXPECT_EQ(TextOf(FocusMeasure::kStrehl).unit, "");
  EXPECT_TRUE(TextOf(FocusMeasure::kCircle).smallIsBest);
  EXPECT_EQ(TextOf(FocusMeasure::kCircle).unit, "um");
}

}  // namespace
}  // namespace orvanel::models
