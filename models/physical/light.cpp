// Photopic white light, and the chromatic eye's refraction.
#include "models/physical/light.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace orvanel::physical {
namespace {

// CIE 1924, times 1e6, at 400 to 700 nm in steps of 5 nm.
constexpr std::array<int, 61> kPhotopic = {
    396,    640,    1210,   2180,   4000,   7300,    11600,  16840,  23000,  29800,  38000,  48000,  60000,
    73900,  90980,  112600, 139020, 169300, 208020,  258600, 323000, 407300, 503000, 608200, 710000, 793200,
    862000, 914850, 954000, 980300, 994950, 1000000, 995000, 978600, 952000, 915400, 870000, 816300, 757000,
    694900, 631000, 566800, 503000, 441200, 381000,  321000, 265000, 217000, 175000, 138200, 107000, 81600,
    61000,  44580,  32000,  23200,  17000,  11920,   8210,   5723,   4102};
constexpr double kFirstNm = 400.0, kStepNm = 5.0;

double Refraction(double wavelengthNm) { return -0.63346 / (wavelengthNm * 1e-3 - 0.21410); }

}  // namespace

double PhotopicSensitivity(double wavelengthNm) {
  const double place = (wavelengthNm - kFirstNm) / kStepNm;
  if (!(place >= 0.0 && place <= kPhotopic.size() - 1.0)) return 0.0;
  const auto below = std::min(static_cast<std::size_t>(place), kPhotopic.size() - 2);
  const double share = place - static_cast<double>(below);
  return ((1.0 - share) * kPhotopic[below] + share * kPhotopic[below + 1]) * 1e-6;
}

Light WhiteLight() {
  Light light;
  for (std::size_t i = 0; i < kPhotopic.size(); i += 2) {
    light.push_back({kFirstNm + kStepNm * static_cast<double>(i), kPhotopic[i] * 1e-6});
  }
  return light;
}

double ChromaticDifference(double wavelengthNm, double referenceNm) {
  return Refraction(wavelengthNm) - Refraction(referenceNm);
}

}  // namespace orvanel::physical
