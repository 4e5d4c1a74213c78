// Compares the library with the results of an independent script.
#include "tests/support/truth.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>

#include "optics/psf.h"
#include "orvanel/optics_engine.h"
#include "tests/support/error_bounds.h"

namespace orvanel::reference {

namespace {

constexpr int kSide = 256;
const Real kFieldNorm = std::sqrt(12853.0L) / kSide;  // that of the samples of the pupil, over the side

void ReadLine(std::istringstream& line, const std::string& what, TrueEye& eye) {
  if (what == "eye") {
    line >> eye.diameter;
    for (int j = 0; j < kCoefficients; ++j) line >> eye.coefficients.emplace_back();
  } else if (what == "peak") {
    line >> eye.peakRow >> eye.peakColumn;
  } else if (what == "wavefront" || what == "field" || what == "psf" || what == "mtf") {
    TrueSample& sample = eye.samples[what].emplace_back();
    line >> sample.row >> sample.column >> sample.value;
    if (what == "field") line >> sample.imaginary;
  } else {
    line >> eye.scalars[what];
  }
}

// The largest difference of a plane from the samples of one kind; infinite if one is not a number.
template <class Samples>
Real Largest(const std::vector<TrueSample>& truth, const Samples& re, const Samples* im = nullptr) {
  Real largest = 0;
  for (const TrueSample& sample : truth) {
    const std::size_t i = At(sample.row, sample.column, kSide);
    const Real difference = std::hypot(re[i] - sample.value, im == nullptr ? 0 : (*im)[i] - sample.imaginary);
    if (!(difference <= largest)) largest = std::isnan(difference) ? HUGE_VALL : difference;
  }
  return largest;
}

}  // namespace

void PrintTo(const TrueEye& eye, std::ostream* out) { *out << eye.name; }

std::vector<TrueEye> ReadTruth(const std::string& file) {
  std::vector<TrueEye> eyes;
  std::ifstream lines(file);
  std::string text;
  while (std::getline(lines, text)) {
    std::istringstream line(text);
    std::string name, what;
    line >> name >> what;
    if (eyes.empty() || eyes.back().name != name) eyes.push_back({name, 0.0, {}, -1, -1, {}, {}});
    ReadLine(line, what, eyes.back());
    if (line.fail()) throw std::runtime_error(file + " has a line that is none of truth: " + text);
  }
  return eyes;
}

std::vector<Deviation> DeviationsFromTruth(const TrueEye& eye) {
  OpticsEngine engine(eye.coefficients.data(), eye.diameter, kSide, 1, 1, 1);
  const Real wavefrontError = WavefrontError(eye.coefficients);
  const Real fieldError = FieldError(ToReal(engine.wavefrontPlane), wavefrontError);

  std::vector<double> re(Area(kSide)), im(Area(kSide)), intensity(Area(kSide)), plane(Area(kSide));
  PupilFunction({engine.wavefrontPlane.data(), kSide}, kWavelength, {{re.data(), kSide}, {im.data(), kSide}});
  engine.Fft2(re.data(), im.data(), kSide, 0);
  engine.ShiftedPowerSpectrum(intensity.data(), re.data(), im.data());
  const orvanel::Peak peak = orvanel::FindPeak({intensity.data(), kSide});

  double pitch = 0.0, strehl = 0.0, step = 0.0;
  engine.ComputePsf(kWavelength, plane.data(), &pitch, &strehl, kSide);
  engine.ComputeMtf(kWavelength, plane.data(), &step, nullptr, nullptr, nullptr, kSide);
  const Plane psf = ToReal(engine.psfPlane);
  const Real psfError = PsfError(psf, fieldError);
  const auto relative = [&eye](const std::string& what, Real value) {
    return std::abs(value / eye.scalars.at(what) - 1);
  };
  return {
      {"wavefront", Largest(eye.samples.at("wavefront"), engine.wavefrontPlane), wavefrontError},
      // No sample is off by more than the norm of all errors.
      {"field", Largest(eye.samples.at("field"), re, &im), fieldError * kFieldNorm},
      {"peak", std::hypot(static_cast<Real>(peak.row - eye.peakRow), static_cast<Real>(peak.column - eye.peakColumn)),
       0},
      {"psf", Largest(eye.samples.at("psf"), psf), psfError},
      {"mtf", Largest(eye.samples.at("mtf"), plane), MtfError(OtfError(psf, kSide, fieldError))},
      {"strehl", relative("strehl", strehl), psfError},
      {"half-width", relative("half-width", engine.psfHalfWidth), kScalarError},
      {"pitch", relative("pitch", pitch), kScalarError},
      {"frequency-step", relative("frequency-step", step), kScalarError},
  };
}

}  // namespace orvanel::reference
