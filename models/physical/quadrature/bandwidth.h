// How many quadrature nodes an oscillating integrand needs.
#ifndef ORVANEL_MODELS_PHYSICAL_QUADRATURE_BANDWIDTH_H
#define ORVANEL_MODELS_PHYSICAL_QUADRATURE_BANDWIDTH_H

#include <array>

#include "models/physical/pupil/pupil.h"

namespace orvanel::physical {

// Of each radial order.
using Amplitudes = std::array<double, kHighestOrder + 1>;

// Bounds of the phase of each radial order on the unit disc, the smaller of two. One is the sum of the bounds of the
// modes, each at most sqrt(2(n + 1)). The other follows from Cauchy and Schwarz: the squares of all modes of one order
// add up to at most (n + 1)^2.
Amplitudes AmplitudesOf(const Pupil& pupil);

// Bounds of the logarithm of the amplitude on the unit disc: of its parts of degree 1 and 2.
struct Damping {
  double linear = 0.0;
  double square = 0.0;
};
Damping DampingOf(const Pupil& pupil);

// The degree above which exp(log amplitude + i phase), as a function of the arc, has no coefficients above 1e-7 of the
// largest amplitude. The phase has no frequency above `frequency`. It is a sum of trigonometric polynomials of degree
// n, each at most amplitudes[n]; the logarithm of the amplitude has the degrees 1 and 2.
//
// At the distance h from the real axis the function is at most exp(h frequency + growth), with
//     growth = sum of amplitudes[n] (sinh n h - n h) + linear (cosh h - 1) + square (cosh 2 h - 1).
// Its coefficients of degree l are at most that times exp(-h l), for every h; the best h is searched.
// The rest averages out over chords and nodes. For 400 random eyes |U|^2 was within 2e-12 of the integral: radial
// orders up to 10, up to 5 waves RMS, half fields up to 60.
double DegreeOf(double frequency, const Amplitudes& amplitudes, const Damping& damping = {});

// More nodes than this are refused.
constexpr int kMaxNodes = 4096;

// The nodes of a Gauss rule that integrates polynomials of this degree, rounded up to a multiple of `step`. Above
// kMaxNodes where that many are too few, and where the degree is not a number.
int CountFor(double degree, int step);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_QUADRATURE_BANDWIDTH_H
