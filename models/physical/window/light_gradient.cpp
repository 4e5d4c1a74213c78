// Transforms weights of the light back to the pupils, and sums them over these by powers of the place.
#include "models/physical/window/light_gradient.h"

#include <cmath>
#include <complex>
#include <numbers>

#include "models/physical/window/peak.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;

// Re(conj(a) b).
double Product(std::complex<double> a, std::complex<double> b) { return a.real() * b.real() + a.imag() * b.imag(); }

Gradient ByModesLessPiston(const Polynomial& byMonomials) {
  Gradient gradient = ByModes(byMonomials);
  gradient[0] = 0.0;
  return gradient;
}

}  // namespace

Gradient SampleGradients::Of(const LightWindow& window, const double* weights) {
  const PlaneTransform& transform = workspace_.transforms.Of(window.side);
  PlaneTransform::Memory& memory = workspace_.transforms.memory;
  const ChordKernels& kernels = workspace_.chords;
  Polynomial derivatives;
  for (std::size_t i = 0; i < beams_.size(); ++i) {
    if (kept_ != window.side) {
      field_ = FieldInWindow(beams_[i], window, workspace_, workspace_.fieldRe, workspace_.fieldIm);
      workspace_.fieldSpectrum.Reserve(transform.FieldSpectrumSize());
      transform.FieldSpectrum(field_.plane, workspace_.fieldSpectrum.data(), memory);
      if (beams_.size() == 1) kept_ = window.side;
    }
    workspace_.product.Reserve(field_.samples);
    double* const product = workspace_.product.data();
    transform.WeighSpectrum(workspace_.fieldSpectrum.data(), weights, field_.plane, product, memory);
    const double wavenumber = 2.0 * kPi / beams_[i].pupil.wavelengthUm;
    const double factor = 2.0 * wavenumber * factors_[i] / (field_.cells * field_.cells);
    field_.outline->AddMoments(product, kernels, factor, derivatives);
  }
  return ByModesLessPiston(derivatives);
}

DensityGradient GradientOfDensity(std::span<const Beam> beams, std::span<const double> factors, double x, double y,
                                  ChordQuadrature& quadrature) {
  constexpr std::complex<double> kI(0.0, 1.0);
  Paraboloid density{};
  Polynomial value, alongX, alongY;
  for (std::size_t n = 0; n < beams.size(); ++n) {
    const Pupil& pupil = beams[n].pupil;
    const double unit = beams[n].unitArcmin, px = x / unit, py = y / unit;
    const FieldMoments m = quadrature.Moments(pupil, px, py, ChordQuadrature::CountsFor(pupil, {px, py, 1.0, 1, 1}));
    const std::complex<double> turn = -kPi * kI;  // of a slope by the place
    const FieldJet field = {m.At(0, 0),
                            turn * m.At(1, 0),
                            turn * m.At(0, 1),
                            turn * turn * m.At(2, 0),
                            turn * turn * m.At(1, 1),
                            turn * turn * m.At(0, 2)};
    const Paraboloid intensity = IntensityOf(field);
    const double factor = factors[n], perUnit = factor / unit, perSquare = perUnit / unit;
    density.value += factor * intensity.value;
    density.x += perUnit * intensity.x;
    density.y += perUnit * intensity.y;
    density.xx += perSquare * intensity.xx;
    density.xy += perSquare * intensity.xy;
    density.yy += perSquare * intensity.yy;
    const std::complex<double> phase = 2.0 * kPi / pupil.wavelengthUm * kI;
    for (int a = 0; a <= kHighestOrder; ++a) {
      for (int b = 0; a + b <= kHighestOrder; ++b) {
        const std::size_t at = Monomial(a, b);
        const std::complex<double> u = phase * m.At(a, b);
        value.coefficients[at] += 2.0 * factor * Product(field.u, u);
        alongX.coefficients[at] +=
            2.0 * perUnit * (Product(field.x, u) + Product(field.u, phase * turn * m.At(a + 1, b)));
        alongY.coefficients[at] +=
            2.0 * perUnit * (Product(field.y, u) + Product(field.u, phase * turn * m.At(a, b + 1)));
      }
    }
  }
  return {density, ByModesLessPiston(value), ByModesLessPiston(alongX), ByModesLessPiston(alongY)};
}

}  // namespace orvanel::physical
