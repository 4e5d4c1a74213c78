// Declares the terms of a Zernike expansion: their indices, names and normalisation.
#ifndef ORVANEL_EYE_CONVENTIONS_MODE_H
#define ORVANEL_EYE_CONVENTIONS_MODE_H

#include <compare>
#include <cstddef>
#include <optional>
#include <string>

#include "base/layers.h"

namespace orvanel::eye {

// Radial order n and azimuthal frequency m: R(n, |m|) cos(m theta) for m >= 0, R(n, |m|) sin(|m| theta) for m < 0.
struct ZernikeTerm {
  int n, m;
  friend constexpr auto operator<=>(const ZernikeTerm&, const ZernikeTerm&) = default;  // NOLINT(modernize-use-nullptr)
};

constexpr int kLargestOrder = 20;  // radial order; no instrument reports higher ones
constexpr std::size_t kMaxTerms = (kLargestOrder + 1) * (kLargestOrder + 2) / 2;

// True if the term exists: |m| at most n, n - m even, n within kLargestOrder.
bool IsTerm(ZernikeTerm term);

// OSA/ANSI Z80.28: j = (n(n + 2) + m) / 2, from 0.
ZernikeTerm Term(std::size_t j);
std::size_t OsaIndex(ZernikeTerm term);

// Noll (1976), Zernike polynomials and atmospheric turbulence: from 1, by n and then |m|; even numbers are cosines.
std::optional<ZernikeTerm> TermOfNoll(std::size_t number);
std::size_t NollIndex(ZernikeTerm term);

// Fringe, the set of 37 terms of the University of Arizona: from 1, by n + |m| and then falling |m|, the cosine first;
// the last is (12, 0).
constexpr std::size_t kFringeTerms = 37;
std::optional<ZernikeTerm> TermOfFringe(std::size_t number);
std::optional<std::size_t> FringeIndex(ZernikeTerm term);

// "defocus", "vertical coma".
std::string Name(ZernikeTerm term);

// "Z(3,-1)".
std::string Symbol(ZernikeTerm term);

// The orthonormal polynomial divided by the unnormalised one.
double NormFactor(ZernikeTerm term);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_CONVENTIONS_MODE_H
