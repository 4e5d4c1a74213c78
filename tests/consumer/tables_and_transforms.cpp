// Tests further public functions from another project: the table of terms, the general transform, the kernel of
// resampling, and a matrix as a number.
#include <orvanel/matrix.h>
#include <orvanel/resampling.h>
#include <orvanel/transforms.h>
#include <orvanel/zernike.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

// A plane of 2 rows of 8 with one sample of 1, at row 1, column 3: its forward transform is known.
bool TransformsOneSample() {
  const double turn = 2.0 * std::acos(-1.0);
  double re[16] = {};
  double im[16] = {};
  re[8 + 3] = 1.0;
  orvanel::Zfft2dc(re, im, 2, 8, -1);
  for (int p = 0; p < 2; ++p) {
    for (int q = 0; q < 8; ++q) {
      const double angle = turn * (p / 2.0 + 3 * q / 8.0);
      if (std::fabs(re[8 * p + q] - std::cos(angle)) > orvanel::kFft2Error) return false;
      if (std::fabs(im[8 * p + q] + std::sin(angle)) > orvanel::kFft2Error) return false;
    }
  }
  return true;
}

}  // namespace

int main() {
  const orvanel::Powers x = orvanel::PowersOf(0.25), y = orvanel::PowersOf(-0.5);
  orvanel::Matrix row(1, 2), column(2, 1);
  row(0, 0) = 2.0;
  row(0, 1) = -3.0;
  column(0, 0) = 5.0;
  column(1, 0) = 7.0;
  const double product = row * column;
  const bool good = orvanel::ZernikeTermTable[2][1](x, y) == -0.375 && orvanel::CubicKernel(-0.5) == 0.625 &&
                    product == -11.0 && TransformsOneSample();
  std::puts(good ? "good" : "wrong");
  return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
