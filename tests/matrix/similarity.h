// Measures whether a Hessenberg form is similar to its matrix by an orthogonal transform.
#ifndef ORVANEL_TESTS_MATRIX_SIMILARITY_H
#define ORVANEL_TESTS_MATRIX_SIMILARITY_H

#include "orvanel/matrix.h"

namespace orvanel::test {

struct Similarity {
  double orthogonality;  // |Q^T Q - I|
  double residual;       // |A Q - Q H|
  double bound;          // on either, the norm of A being 1
};

// Of a form H of A.
Similarity SimilarityOf(const Matrix& a, const Matrix& h);

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_MATRIX_SIMILARITY_H
