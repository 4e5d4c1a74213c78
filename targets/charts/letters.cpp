// Draws the outlines of letters with exact corners.
#include "targets/charts/letters.h"

#include <cmath>

namespace orvanel::targets::charts {
namespace {

constexpr Turn kClockwise = Turn::kClockwise, kAnticlockwise = Turn::kAnticlockwise;
constexpr Point kMiddle = {2.5, 2.5};
constexpr double kOuter = 2.5, kInner = 1.5;

}  // namespace

Shape LandoltRing() {
  // Where the sides of the gap, at half a stroke from the middle, cross the circles.
  constexpr double kHalfGap = 0.5;
  const double outer = std::sqrt(kOuter * kOuter - kHalfGap * kHalfGap);
  const double inner = std::sqrt(kInner * kInner - kHalfGap * kHalfGap);
  Outline outline(kMiddle + Point{outer, kHalfGap});
  outline.ArcTo(kMiddle + Point{outer, -kHalfGap}, kMiddle, kClockwise);
  outline.LineTo(kMiddle + Point{inner, -kHalfGap});
  outline.ArcTo(kMiddle + Point{inner, kHalfGap}, kMiddle, kAnticlockwise);
  Shape shape;
  shape.Add(outline);
  return shape;
}

Shape TumblingE() {
  return Polygon({{0, 0}, {5, 0}, {5, 1}, {1, 1}, {1, 2}, {5, 2}, {5, 3}, {1, 3}, {1, 4}, {5, 4}, {5, 5}, {0, 5}});
}

Shape LetterD() {
  Shape shape;
  shape.Add(Outline({0, 0}).LineTo({2.5, 0}).ArcTo({2.5, 5}, kMiddle, kClockwise).LineTo({0, 5}));
  shape.Add(Outline({1, 1}).LineTo({1, 4}).LineTo({2.5, 4}).ArcTo({2.5, 1}, kMiddle, kAnticlockwise));
  return shape;
}

Shape LetterH() {
  return Polygon({{0, 0}, {1, 0}, {1, 2}, {4, 2}, {4, 0}, {5, 0}, {5, 5}, {4, 5}, {4, 3}, {1, 3}, {1, 5}, {0, 5}});
}

Shape LetterK() {
  // Arm and leg are inclined by 45 degrees and meet at a right angle. The ends of such a stroke are sqrt(2) wide.
  const double width = std::sqrt(2.0);
  return Polygon({{0, 0},
                  {1, 0},
                  {1, 4 - width},
                  {5 - width, 0},
                  {5, 0},
                  {2.5, 2.5},
                  {5, 5},
                  {5 - width, 5},
                  {2.5 - 0.5 * width, 2.5 + 0.5 * width},
                  {1, 4},
                  {1, 5},
                  {0, 5}});
}

Shape LetterN() {
  // A diagonal stroke between opposite corners moves by 3 for each 4 downwards; its ends are 5/4 wide.
  return Polygon(
      {{0, 0}, {1.25, 0}, {4, 11.0 / 3.0}, {4, 0}, {5, 0}, {5, 5}, {3.75, 5}, {1, 4.0 / 3.0}, {1, 5}, {0, 5}});
}

Shape LetterO() { return Ring(kMiddle, kOuter, kInner); }

Shape LetterR() {
  // The leg moves by 3 for each 4 downwards, to the corner; its ends are 5/4 wide.
  constexpr Point kBowl = {3.5, 1.5};
  Shape shape;
  shape.Add(Outline({0, 0})
                .LineTo({3.5, 0})
                .ArcTo({3.5, 3}, kBowl, kClockwise)
                .LineTo({5, 5})
                .LineTo({3.75, 5})
                .LineTo({2.25, 3})
                .LineTo({1, 3})
                .LineTo({1, 5})
                .LineTo({0, 5}));
  shape.Add(Outline({1, 1}).LineTo({1, 2}).LineTo({3.5, 2}).ArcTo({3.5, 1}, kBowl, kAnticlockwise));
  return shape;
}

Shape LetterS() {
  // Half rings on one side and quarter rings on the other, above and below the bar in the middle.
  constexpr Point kUpperLeft = {1.5, 1.5}, kUpperRight = {3.5, 1.5}, kLowerLeft = {1.5, 3.5}, kLowerRight = {3.5, 3.5};
  Shape shape;
  shape.Add(Outline({1.5, 0})
                .LineTo({3.5, 0})
                .ArcTo({5, 1.5}, kUpperRight, kClockwise)
                .LineTo({4, 1.5})
                .ArcTo({3.5, 1}, kUpperRight, kAnticlockwise)
                .LineTo({1.5, 1})
                .ArcTo({1.5, 2}, kUpperLeft, kAnticlockwise)
                .LineTo({3.5, 2})
                .ArcTo({3.5, 5}, kLowerRight, kClockwise)
                .LineTo({1.5, 5})
                .ArcTo({0, 3.5}, kLowerLeft, kClockwise)
                .LineTo({1, 3.5})
                .ArcTo({1.5, 4}, kLowerLeft, kAnticlockwise)
                .LineTo({3.5, 4})
                .ArcTo({3.5, 3}, kLowerRight, kAnticlockwise)
                .LineTo({1.5, 3})
                .ArcTo({1.5, 0}, kUpperLeft, kClockwise));
  return shape;
}

Shape LetterT() { return Polygon({{0, 0}, {5, 0}, {5, 1}, {3, 1}, {3, 5}, {2, 5}, {2, 1}, {0, 1}}); }

Shape LetterV() {
  // Both arms have the foot in common, `width` wide like the ends above. An arm moves by `slope` for each 1 downwards:
  // slope = (2.5 - width / 2) / 5 and width = sqrt(1 + slope^2).
  const double width = (std::sqrt(4.96) - 0.1) / 1.98;
  const double slope = 0.5 - 0.1 * width;
  return Polygon({{0, 0},
                  {width, 0},
                  {2.5, (2.5 - width) / slope},
                  {5 - width, 0},
                  {5, 0},
                  {2.5 + 0.5 * width, 5},
                  {2.5 - 0.5 * width, 5}});
}

Shape LetterZ() {
  // The letter N, turned by a quarter around its middle.
  return LetterN().Placed({{5, 0}, 1.0, -90.0});
}

}  // namespace orvanel::targets::charts
