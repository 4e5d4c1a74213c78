// What the iterations on a Hessenberg form share.
#ifndef ORVANEL_MATRIX_HESSENBERG_H
#define ORVANEL_MATRIX_HESSENBERG_H

#include "orvanel/matrix.h"

namespace orvanel {

// The sum of the magnitudes of everything from the subdiagonal up.
double HessenbergNorm(const Matrix& h);

// Whether the subdiagonal element of row l > 0 adds nothing to its two neighbours on the diagonal, in machine
// precision; where both are 0, to the norm.
bool IsNegligible(const Matrix& h, int l, double norm);

}  // namespace orvanel

#endif  // ORVANEL_MATRIX_HESSENBERG_H
