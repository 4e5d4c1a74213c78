// Reads both columns and checks their ranges.
#include "files/tables/spectrum.h"

#include <string_view>

#include "base/error.h"
#include "base/number_text.h"
#include "base/wavelength_range.h"
#include "files/input_file.h"
#include "files/tables/csv.h"

namespace orvanel::files {
namespace {

constexpr std::size_t kMostRows = 1000;

bool IsNumber(std::string_view text) {
  try {
    ParseNumber(text);
  } catch (const Error&) {
    return false;
  }
  return true;
}

double NumberIn(const Record& record, std::size_t column, const std::string& file) {
  try {
    return ParseNumber(record[column]);
  } catch (const Error& error) {
    throw ErrorAt(file, record.place(column), error.what());
  }
}

}  // namespace

std::vector<std::pair<Nanometres, double>> ReadSpectrum(const std::string& file) {
  const std::string name = InputName(file);
  InputFile stream(file);
  CsvReader reader(stream, name);
  std::vector<std::pair<Nanometres, double>> spectrum;
  Record record;
  for (bool first = true; reader.Next(record); first = false) {
    if (record.size() != 2) {
      throw ErrorAt(
          name, record.place(0),
          "the row has " + std::to_string(record.size()) + " fields; write two, a wavelength in nm and its weight");
    }
    if (first && !IsNumber(record[0])) continue;
    if (spectrum.size() == kMostRows) {
      throw ErrorAt(name, record.place(0), "a spectrum has at most " + std::to_string(kMostRows) + " rows");
    }
    const double wavelength = NumberIn(record, 0, name), weight = NumberIn(record, 1, name);
    if (wavelength < kShortestNm || wavelength > kLongestNm) {
      throw ErrorAt(name, record.place(0),
                    "the wavelength " + ShortestText(wavelength) + " is outside of " + ShortestText(kShortestNm) +
                        " to " + ShortestText(kLongestNm) + " nm");
    }
    if (weight < 0.0) {
      throw ErrorAt(name, record.place(1), "the weight " + ShortestText(weight) + " is negative");
    }
    spectrum.emplace_back(Nanometres(wavelength), weight);
  }
  if (spectrum.empty()) throw Error(name + ": no wavelengths; write rows of a wavelength in nm and its weight");
  return spectrum;
}

}  // namespace orvanel::files
