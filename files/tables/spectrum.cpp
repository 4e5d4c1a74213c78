// Checks the ranges of both columns.
#include "files/tables/spectrum.h"

#include "base/error.h"
#include "base/number_text.h"
#include "base/wavelength_range.h"
#include "files/input_file.h"
#include "files/tables/number_pairs.h"

namespace orvanel::files {

std::vector<std::pair<Nanometres, double>> ReadSpectrum(const std::string& file) {
  const std::string name = InputName(file);
  std::vector<std::pair<Nanometres, double>> spectrum;
  for (const auto& [numbers, places] :
       ReadNumberPairs(file, {"a spectrum", "a wavelength in nm and its weight", 1000})) {
    const auto [wavelength, weight] = numbers;
    if (wavelength < kShortestNm || wavelength > kLongestNm) {
      throw ErrorAt(name, places[0],
                    "the wavelength " + ShortestText(wavelength) + " is outside of " + ShortestText(kShortestNm) +
                        " to " + ShortestText(kLongestNm) + " nm");
    }
    if (weight < 0.0) throw ErrorAt(name, places[1], "the weight " + ShortestText(weight) + " is negative");
    spectrum.emplace_back(Nanometres(wavelength), weight);
  }
  return spectrum;
}

}  // namespace orvanel::files
