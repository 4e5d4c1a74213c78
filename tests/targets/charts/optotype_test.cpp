// Tests the sets of optotypes, their names and directions.
#include "targets/charts/optotype.h"

#include <gtest/gtest.h>

#include <string>

#include "targets/charts/coverage.h"

namespace orvanel::targets::charts {
namespace {

std::string Names(const OptotypeSet& set) {
  std::string names;
  for (const Optotype& optotype : set.optotypes) names += std::string(optotype.name) + " ";
  return names;
}

// Material of an optotype at a place, in strokes from its middle.
double MaterialAt(const OptotypeSet& set, std::string_view name, double x, double y) {
  const Shape shape = set.optotypes[static_cast<std::size_t>(*FindOptotype(set, name))].Drawn();
  constexpr double kScale = 20.0;
  Coverage coverage(1, 1);
  coverage.Add(shape.Placed({{0.5 - kScale * x, 0.5 - kScale * y}, kScale, 0.0}));
  return coverage.Take()[0];
}

TEST(Optotype, SetsHaveTheirMembers) {
  EXPECT_EQ(Names(*OptotypeSetNamed("sloan")), "C D H K N O R S V Z ");
  EXPECT_EQ(Names(*OptotypeSetNamed("hotv")), "H O T V ");
  EXPECT_EQ(Names(*OptotypeSetNamed("landolt4")), "right up left down ");
  EXPECT_EQ(Names(*OptotypeSetNamed("landolt8")), "right up left down up-right up-left down-left down-right ");
  EXPECT_EQ(Names(*OptotypeSetNamed("tumbling-e")), "right up left down ");
  EXPECT_EQ(OptotypeSetNamed("snellen"), nullptr);
  EXPECT_EQ(OptotypeSets().size(), 5U);
}

TEST(Optotype, NamesAreFoundInUpperAndLowerCase) {
  const OptotypeSet& sloan = *OptotypeSetNamed("sloan");
  EXPECT_EQ(FindOptotype(sloan, "C"), 0);
  EXPECT_EQ(FindOptotype(sloan, "z"), 9);
  EXPECT_EQ(FindOptotype(sloan, "E"), std::nullopt);
  EXPECT_EQ(FindOptotype(*OptotypeSetNamed("landolt4"), "Up"), 1);
  EXPECT_EQ(FindOptotype(*OptotypeSetNamed("landolt4"), "up-left"), std::nullopt);
}

TEST(Optotype, GapsOfRingsAreWhereTheirNamesSay) {
  const OptotypeSet& rings = *OptotypeSetNamed("landolt8");
  const double d = 2.0 * 0.7071;  // the middle of the stroke, on the diagonal
  const struct {
    const char* name;
    double x, y;
  } gaps[] = {{"right", 2, 0}, {"up-right", d, -d},  {"up", 0, -2},  {"up-left", -d, -d},
              {"left", -2, 0}, {"down-left", -d, d}, {"down", 0, 2}, {"down-right", d, d}};
  for (const auto& ring : gaps) {
    for (const auto& place : gaps) {
      EXPECT_EQ(MaterialAt(rings, ring.name, place.x, place.y), ring.name == place.name ? 0.0 : 1.0)
          << ring.name << " at " << place.name;
    }
  }
}

TEST(Optotype, BarsOfTheEPointWhereTheirNamesSay) {
  const OptotypeSet& set = *OptotypeSetNamed("tumbling-e");
  const struct {
    const char* name;
    double x, y;
  } ends[] = {{"right", 2, 1}, {"up", 1, -2}, {"left", -2, -1}, {"down", -1, 2}};
  // Between two bars, at their ends: empty only on the open side.
  for (const auto& e : ends) {
    for (const auto& place : ends) {
      EXPECT_EQ(MaterialAt(set, e.name, place.x, place.y), e.name == place.name ? 0.0 : 1.0)
          << e.name << " at " << place.name;
    }
  }
}

TEST(Optotype, IsCentredAndKeepsItsAreaInEveryDirection) {
  for (const OptotypeSet& set : OptotypeSets()) {
    for (const Optotype& optotype : set.optotypes) {
      const Shape drawn = optotype.Drawn();
      EXPECT_NEAR(drawn.Area(), optotype.draw().Area(), 1e-12);
      for (const Edge& edge : drawn.edges()) {
        EXPECT_LE(edge.from.x * edge.from.x + edge.from.y * edge.from.y, 2.0 * 2.5 * 2.5 + 1e-12);
      }
      // The middle row has material on both halves, unless a gap is there.
      Coverage coverage(2, 1);
      coverage.Add(drawn.Placed({{1.0, 0.5}, 0.4, 0.0}));
      const Plane halves = coverage.Take();
      EXPECT_GT(halves[0], 0.0) << optotype.name;
      EXPECT_GT(halves[1], 0.0) << optotype.name;
    }
  }
}

}  // namespace
}  // namespace orvanel::targets::charts
