// Declares helpers of the iterations on a Hessenberg form.
#ifndef ORVANEL_MATRIX_HESSENBERG_H
#define ORVANEL_MATRIX_HESSENBERG_H

#include "orvanel/matrix.h"

namespace orvanel {

// The sum of the magnitudes of everything from the subdiagonal up.
double HessenbergNorm(const Matrix& h);

// True if the subdiagonal element of row l > 0 is negligible in machine precision: it does not change the sum of the
// magnitudes of its two neighbours on the diagonal. If both are 0, it is compared with the norm.
bool IsNegligible(const Matrix& h, int l, double norm);

}  // namespace orvanel

#endif  // ORVANEL_MATRIX_HESSENBERG_H
