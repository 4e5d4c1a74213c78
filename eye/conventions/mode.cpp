// Computes indices by the published rules, and composes names from their common parts.
#include "eye/conventions/mode.h"

#include <cmath>
#include <cstdlib>

namespace orvanel::eye {
namespace {

std::string Multiplicity(int n, int m) {
  static const char* const kWords[] = {"", "secondary ", "tertiary ", "quaternary "};
  const int rank = (n - std::abs(m)) / 2;
  return rank < 4 ? kWords[rank] : std::to_string(rank + 1) + "th ";
}

std::string Direction(int m) {
  if (m == -1) return "vertical ";
  if (m == 1) return "horizontal ";
  return (m < 0) == (m % 2 == 0) ? "oblique " : "vertical ";
}

std::string Figure(int m) {
  static const char* const kFigures[] = {"",          "coma",     "astigmatism", "trefoil", "quadrafoil",
                                         "pentafoil", "hexafoil", "heptafoil",   "octafoil"};
  const int folds = std::abs(m);
  return folds <= 8 ? kFigures[folds] : std::to_string(folds) + "-foil";
}

}  // namespace

bool IsTerm(ZernikeTerm term) {
  return term.n >= 0 && term.n <= kLargestOrder && std::abs(term.m) <= term.n && (term.n - term.m) % 2 == 0;
}

ZernikeTerm Term(std::size_t j) {
  int n = 0;
  int first = 0;  // index of the first term of order n
  while (first + n < static_cast<int>(j)) first += ++n;
  return {n, 2 * (static_cast<int>(j) - first) - n};
}

std::size_t OsaIndex(ZernikeTerm term) { return static_cast<std::size_t>((term.n * (term.n + 2) + term.m) / 2); }

std::size_t NollIndex(ZernikeTerm term) {
  const auto [n, m] = term;
  const bool low = n % 4 <= 1;  // radial orders in which the cosine of a pair comes first
  const int later = m > 0 ? !low : m < 0 ? low : 1;
  return static_cast<std::size_t>(n * (n + 1) / 2 + std::abs(m) + later);
}

std::optional<ZernikeTerm> TermOfNoll(std::size_t number) {
  if (number < 1 || number > kMaxTerms) return std::nullopt;
  const int n = Term(number - 1).n;  // both schemes number one radial order after the other
  for (int m = -n; m <= n; m += 2) {
    if (NollIndex({n, m}) == number) return ZernikeTerm{n, m};
  }
  return std::nullopt;
}

std::optional<std::size_t> FringeIndex(ZernikeTerm term) {
  const auto [n, m] = term;
  if (n == 12 && m == 0) return kFringeTerms;
  const int group = (n + std::abs(m)) / 2;
  const int number = (group + 1) * (group + 1) - 2 * std::abs(m) + (m < 0 ? 1 : 0);
  if (number >= static_cast<int>(kFringeTerms)) return std::nullopt;
  return static_cast<std::size_t>(number);
}

std::optional<ZernikeTerm> TermOfFringe(std::size_t number) {
  if (number < 1 || number > kFringeTerms) return std::nullopt;
  for (std::size_t j = 0; j <= OsaIndex({12, 0}); ++j) {
    if (FringeIndex(Term(j)) == number) return Term(j);
  }
  return std::nullopt;
}

std::string Name(ZernikeTerm term) {
  const auto [n, m] = term;
  if (n == 0) return "piston";
  if (n == 1) return Direction(m) + "tilt";
  if (n == 2 && m == 0) return "defocus";
  if (m == 0) {
    const std::string rank = n == 4 ? "primary " : Multiplicity(n - 4, 0);
    return rank + "spherical aberration";
  }
  // Coma of radial order 3 is the primary one.
  return Multiplicity(std::abs(m) == 1 ? n - 2 : n, m) + Direction(m) + Figure(m);
}

std::string Symbol(ZernikeTerm term) { return "Z(" + std::to_string(term.n) + "," + std::to_string(term.m) + ")"; }

double NormFactor(ZernikeTerm term) { return std::sqrt(term.m == 0 ? term.n + 1.0 : 2.0 * (term.n + 1.0)); }

}  // namespace orvanel::eye
