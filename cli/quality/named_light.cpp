// Looks for words first, then for a number, then for a file.
#include "cli/quality/named_light.h"

#include <optional>
#include <utility>

#include "base/error.h"
#include "base/number_text.h"
#include "base/wavelength_range.h"
#include "files/tables/spectrum.h"

namespace orvanel::cli {
namespace {

constexpr const char *kWhite = "white", *kDisplay = "display";

std::optional<double> NumberOfWavelength(const std::string& light) {
  try {
    return ParseNumber(light);
  } catch (const Error&) {
    return std::nullopt;
  }
}

}  // namespace

bool NamesSpectrumFile(const std::string& light) {
  return light != kWhite && light != kDisplay && !NumberOfWavelength(light);
}

void SetLight(PhysicalSettings& settings, const std::string& light) {
  if (light == kDisplay) {
    SetDisplay(settings, physical::BuiltInDisplay());
    return;
  }
  physical::Light lines;
  if (light == kWhite) {
    lines = physical::WhiteLight();
  } else if (const std::optional<double> wavelength = NumberOfWavelength(light)) {
    if (*wavelength < kShortestNm || *wavelength > kLongestNm) {
      throw Error(Quoted(light) + " is outside of " + ShortestText(kShortestNm) + " to " + ShortestText(kLongestNm) +
                  " nm");
    }
    lines = {{*wavelength, 1.0}};
  } else {
    for (const auto& [length, weight] : ReadSpectrum(light)) lines.push_back({length.value(), weight});
  }
  settings.light = std::move(lines);
  settings.display.reset();
}

void SetDisplay(PhysicalSettings& settings, physical::Display display) {
  settings.light = WhiteOf(display);
  settings.display = std::move(display);
}

}  // namespace orvanel::cli
