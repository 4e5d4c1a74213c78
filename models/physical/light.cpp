// Photopic white light, and the chromatic eye's refraction.
#include "models/physical/light.h"

#include <array>

namespace orvanel::physical {
namespace {

// CIE 1924, times 1e6, at 400 to 700 nm.
constexpr std::array<int, 31> kPhotopic = {396,    1210,   4000,   11600,  23000,  38000,  60000,  90980,
                                           139020, 208020, 323000, 503000, 710000, 862000, 954000, 994950,
                                           995000, 952000, 870000, 757000, 631000, 503000, 381000, 265000,
                                           175000, 107000, 61000,  32000,  17000,  8210,   4102};

double Refraction(double wavelengthNm) { return -0.63346 / (wavelengthNm * 1e-3 - 0.21410); }

}  // namespace

Light WhiteLight() {
  Light light;
  double wavelengthNm = 400.0;
  for (const int weight : kPhotopic) {
    light.push_back({wavelengthNm, weight * 1e-6});
    wavelengthNm += 10.0;
  }
  return light;
}

double ChromaticDifference(double wavelengthNm, double referenceNm) {
  return Refraction(wavelengthNm) - Refraction(referenceNm);
}

}  // namespace orvanel::physical
