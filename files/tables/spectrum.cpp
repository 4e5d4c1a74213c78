// Checks the ranges of all columns.
#include "files/tables/spectrum.h"

#include "base/error.h"
#include "base/number_text.h"
#include "base/wavelength_range.h"
#include "files/input_file.h"
#include "files/tables/number_pairs.h"

namespace orvanel::files {

namespace {

constexpr std::size_t kMostRows = 1000;

// Rows of a wavelength in nm and values of at least 0.
//   value, columns  "weight", "a wavelength in nm and its weight"
std::vector<NumberRow> SpectrumRows(const std::string& file, std::size_t count, const std::string& value,
                                    const char* columns) {
  const std::string name = InputName(file);
  std::vector<NumberRow> rows = ReadNumberRows(file, count, {"a spectrum", columns, kMostRows});
  for (const auto& [numbers, places] : rows) {
    if (numbers[0] < kShortestNm || numbers[0] > kLongestNm) {
      throw ErrorAt(name, places[0],
                    "the wavelength " + ShortestText(numbers[0]) + " is outside of " + ShortestText(kShortestNm) +
                        " to " + ShortestText(kLongestNm) + " nm");
    }
    for (std::size_t i = 1; i < count; ++i) {
      if (numbers[i] < 0.0) {
        throw ErrorAt(name, places[i], "the " + value + " " + ShortestText(numbers[i]) + " is negative");
      }
    }
  }
  return rows;
}

}  // namespace

std::vector<std::pair<Nanometres, double>> ReadSpectrum(const std::string& file) {
  std::vector<std::pair<Nanometres, double>> spectrum;
  for (const NumberRow& row : SpectrumRows(file, 2, "weight", "a wavelength in nm and its weight")) {
    spectrum.emplace_back(Nanometres(row.numbers[0]), row.numbers[1]);
  }
  return spectrum;
}

std::vector<PrimariesRow> ReadPrimaries(const std::string& file) {
  std::vector<PrimariesRow> spectra;
  for (const auto& [numbers, places] :
       SpectrumRows(file, 4, "power", "a wavelength in nm and the powers of red, green and blue")) {
    if (!spectra.empty() && numbers[0] <= spectra.back().wavelength.value()) {
      throw ErrorAt(InputName(file), places[0],
                    "the wavelength " + ShortestText(numbers[0]) +
                        " is not above that of the row before; sort the rows by wavelength");
    }
    spectra.push_back({Nanometres(numbers[0]), {numbers[1], numbers[2], numbers[3]}});
  }
  return spectra;
}

}  // namespace orvanel::files
