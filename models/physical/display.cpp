// Weighs spectra of power by the photopic sensitivity.
#include "models/physical/display.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <numbers>
#include <utility>

#include "base/elementary.h"

namespace orvanel::physical {
namespace {

constexpr double kFirstNm = 400.0, kLastNm = 700.0;
constexpr double kSmallestShare = 1e-4;  // of the luminance of a primary; weaker lines are left out

double LuminanceOf(const Light& light) {
  double sum = 0.0;
  for (const SpectralLine& line : light) sum += line.weight;
  return sum;
}

Light WithoutWeakLines(Light light) {
  const double least = kSmallestShare * LuminanceOf(light);
  light.erase(
      std::remove_if(light.begin(), light.end(),
                     [least](const SpectralLine& line) { return !(line.weight > 0.0 && line.weight >= least); }),
      light.end());
  return light;
}

// A Gaussian spectrum of power, of this luminance.
Light GaussianLight(double peakNm, double widthNm, double luminance) {
  constexpr double kStepNm = 10.0;
  Light light;
  for (int i = 0; kFirstNm + i * kStepNm <= kLastNm; ++i) {
    const double wavelength = kFirstNm + i * kStepNm, distance = (wavelength - peakNm) / widthNm;
    const double power = Exponential(-4.0 * std::numbers::ln2 * distance * distance);
    light.push_back({wavelength, power * PhotopicSensitivity(wavelength)});
  }
  light = WithoutWeakLines(std::move(light));
  const double sum = LuminanceOf(light);
  for (SpectralLine& line : light) line.weight *= luminance / sum;
  return light;
}

// Shares the light between two rows among the lines beside it, by distance. Power, sensitivity and share are linear
// between two lines, so that Simpson's rule integrates their product exactly.
class LineCollector {
 public:
  void Add(double fromNm, double fromPower, double toNm, double toPower) {
    double start = std::max(fromNm, kFirstNm);
    const double end = std::min(toNm, kLastNm);
    while (start < end) {
      const double cell = std::floor((start - kFirstNm) / kStepNm);
      const double stop = std::min(end, kFirstNm + (cell + 1.0) * kStepNm);
      const auto power = [&](double nm) {
        return fromPower + (toPower - fromPower) * ((nm - fromNm) / (toNm - fromNm));
      };
      for (const auto& [place, weight] : {std::pair{0.0, 1.0}, {0.5, 4.0}, {1.0, 1.0}}) {
        const double nm = start + (stop - start) * place;
        const double light = power(nm) * PhotopicSensitivity(nm) * weight * (stop - start) / 6.0;
        const double share = (nm - kFirstNm) / kStepNm - cell;
        const auto line = static_cast<std::size_t>(cell);
        weights_[line] += (1.0 - share) * light;
        weights_[line + 1] += share * light;
      }
      start = stop;
    }
  }
  Light light() const {
    Light light;
    for (std::size_t i = 0; i < kLines; ++i) {
      light.push_back({kFirstNm + kStepNm * static_cast<double>(i), weights_[i]});
    }
    return WithoutWeakLines(std::move(light));
  }

 private:
  static constexpr double kStepNm = 5.0;
  static constexpr std::size_t kLines = 61;
  std::array<double, kLines + 1> weights_{};
};

}  // namespace

Display BuiltInDisplay() {
  // The luminances of the primaries of sRGB. Source: IEC 61966-2-1.
  return {{GaussianLight(611.0, 28.0, 0.2126), GaussianLight(539.0, 78.0, 0.7152), GaussianLight(459.0, 50.0, 0.0722)}};
}

Display DisplayOf(const std::vector<PrimaryPowers>& rows) {
  Display display;
  for (std::size_t c = 0; c < display.primaries.size(); ++c) {
    LineCollector lines;
    for (std::size_t i = 1; i < rows.size(); ++i) {
      lines.Add(rows[i - 1].wavelengthNm, rows[i - 1].power[c], rows[i].wavelengthNm, rows[i].power[c]);
    }
    display.primaries[c] = lines.light();
  }
  return display;
}

Light WhiteOf(const Display& display) {
  std::map<double, double> weights;
  for (const Light& primary : display.primaries) {
    for (const SpectralLine& line : primary) weights[line.wavelengthNm] += line.weight;
  }
  Light light;
  for (const auto& [wavelength, weight] : weights) light.push_back({wavelength, weight});
  return light;
}

}  // namespace orvanel::physical
