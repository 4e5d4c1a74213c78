// Sums the squares of orthonormal coefficients.
#include "eye/rms.h"

#include <cmath>

namespace orvanel::eye {

Micrometres Rms(const Coefficients& osa, int first, int last) {
  double squares = 0.0;
  for (std::size_t j = 0; j < osa.size(); ++j) {
    const int n = Term(j).n;
    if (n >= first && n <= last) squares += osa[j] * osa[j];
  }
  return Micrometres(std::sqrt(squares));
}

}  // namespace orvanel::eye
