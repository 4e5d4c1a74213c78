// Defines the table of the 45 Zernike polynomials.
#include "orvanel/zernike.h"

namespace orvanel {
namespace {

constexpr std::array<ZernikeTerm, 1> kOrder0 = {{
    // m = 0
    [](const Powers&, const Powers&) { return 1.0; },
}};

constexpr std::array<ZernikeTerm, 2> kOrder1 = {{
    // m = -1
    [](const Powers&, const Powers& y) { return y[1]; },
    // m = 1
    [](const Powers& x, const Powers&) { return x[1]; },
}};

constexpr std::array<ZernikeTerm, 3> kOrder2 = {{
    // m = -2
    [](const Powers& x, const Powers& y) { return 2 * x[1] * y[1]; },
    // m = 0
    [](const Powers& x, const Powers& y) { return 2 * x[2] + 2 * y[2] - 1.0; },
    // m = 2
    [](const Powers& x, const Powers& y) { return x[2] - y[2]; },
}};

constexpr std::array<ZernikeTerm, 4> kOrder3 = {{
    // m = -3
    [](const Powers& x, const Powers& y) { return 3 * x[2] * y[1] - y[3]; },
    // m = -1
    [](const Powers& x, const Powers& y) { return 3 * x[2] * y[1] + 3 * y[3] - 2 * y[1]; },
    // m = 1
    [](const Powers& x, const Powers& y) { return 3 * x[3] + 3 * x[1] * y[2] - 2 * x[1]; },
    // m = 3
    [](const Powers& x, const Powers& y) { return x[3] - 3 * x[1] * y[2]; },
}};

constexpr std::array<ZernikeTerm, 5> kOrder4 = {{
    // m = -4
    [](const Powers& x, const Powers& y) { return 4 * x[3] * y[1] - 4 * x[1] * y[3]; },
    // m = -2
    [](const Powers& x, const Powers& y) { return 8 * x[3] * y[1] + 8 * x[1] * y[3] - 6 * x[1] * y[1]; },
    // m = 0
    [](const Powers& x, const Powers& y) { return 6 * x[4] + 12 * x[2] * y[2] + 6 * y[4] - 6 * x[2] - 6 * y[2] + 1.0; },
    // m = 2
    [](const Powers& x, const Powers& y) { return 4 * x[4] - 4 * y[4] - 3 * x[2] + 3 * y[2]; },
    // m = 4
    [](const Powers& x, const Powers& y) { return x[4] - 6 * x[2] * y[2] + y[4]; },
}};

constexpr std::array<ZernikeTerm, 6> kOrder5 = {{
    // m = -5
    [](const Powers& x, const Powers& y) { return 5 * x[4] * y[1] - 10 * x[2] * y[3] + y[5]; },
    // m = -3
    [](const Powers& x, const Powers& y) {
      return 15 * x[4] * y[1] + 10 * x[2] * y[3] - 5 * y[5] - 12 * x[2] * y[1] + 4 * y[3];
    },
    // m = -1
    [](const Powers& x, const Powers& y) {
      return 10 * x[4] * y[1] + 20 * x[2] * y[3] + 10 * y[5] - 12 * x[2] * y[1] - 12 * y[3] + 3 * y[1];
    },
    // m = 1
    [](const Powers& x, const Powers& y) {
      return 10 * x[5] + 20 * x[3] * y[2] + 10 * x[1] * y[4] - 12 * x[3] - 12 * x[1] * y[2] + 3 * x[1];
    },
    // m = 3
    [](const Powers& x, const Powers& y) {
      return 5 * x[5] - 10 * x[3] * y[2] - 15 * x[1] * y[4] - 4 * x[3] + 12 * x[1] * y[2];
    },
    // m = 5
    [](const Powers& x, const Powers& y) { return x[5] - 10 * x[3] * y[2] + 5 * x[1] * y[4]; },
}};

constexpr std::array<ZernikeTerm, 7> kOrder6 = {{
    // m = -6
    [](const Powers& x, const Powers& y) { return 6 * x[5] * y[1] - 20 * x[3] * y[3] + 6 * x[1] * y[5]; },
    // m = -4
    [](const Powers& x, const Powers& y) {
      return 24 * x[5] * y[1] - 24 * x[1] * y[5] - 20 * x[3] * y[1] + 20 * x[1] * y[3];
    },
    // m = -2
    [](const Powers& x, const Powers& y) {
      return 30 * x[5] * y[1] + 60 * x[3] * y[3] + 30 * x[1] * y[5] - 40 * x[3] * y[1] - 40 * x[1] * y[3] +
             12 * x[1] * y[1];
    },
    // m = 0
    [](const Powers& x, const Powers& y) {
      return 20 * x[6] + 60 * x[4] * y[2] + 60 * x[2] * y[4] + 20 * y[6] - 30 * x[4] - 60 * x[2] * y[2] - 30 * y[4] +
             12 * x[2] + 12 * y[2] - 1.0;
    },
    // m = 2
    [](const Powers& x, const Powers& y) {
      return 15 * x[6] + 15 * x[4] * y[2] - 15 * x[2] * y[4] - 15 * y[6] - 20 * x[4] + 20 * y[4] + 6 * x[2] - 6 * y[2];
    },
    // m = 4
    [](const Powers& x, const Powers& y) {
      return 6 * x[6] - 30 * x[4] * y[2] - 30 * x[2] * y[4] + 6 * y[6] - 5 * x[4] + 30 * x[2] * y[2] - 5 * y[4];
    },
    // m = 6
    [](const Powers& x, const Powers& y) { return x[6] - 15 * x[4] * y[2] + 15 * x[2] * y[4] - y[6]; },
}};

constexpr std::array<ZernikeTerm, 8> kOrder7 = {{
    // m = -7
    [](const Powers& x, const Powers& y) { return 7 * x[6] * y[1] - 35 * x[4] * y[3] + 21 * x[2] * y[5] - y[7]; },
    // m = -5
    [](const Powers& x, const Powers& y) {
      return 35 * x[6] * y[1] - 35 * x[4] * y[3] - 63 * x[2] * y[5] + 7 * y[7] - 30 * x[4] * y[1] + 60 * x[2] * y[3] -
             6 * y[5];
    },
    // m = -3
    [](const Powers& x, const Powers& y) {
      return 63 * x[6] * y[1] + 105 * x[4] * y[3] + 21 * x[2] * y[5] - 21 * y[7] - 90 * x[4] * y[1] - 60 * x[2] * y[3] +
             30 * y[5] + 30 * x[2] * y[1] - 10 * y[3];
    },
    // m = -1
    [](const Powers& x, const Powers& y) {
      return 35 * x[6] * y[1] + 105 * x[4] * y[3] + 105 * x[2] * y[5] + 35 * y[7] - 60 * x[4] * y[1] -
             120 * x[2] * y[3] - 60 * y[5] + 30 * x[2] * y[1] + 30 * y[3] - 4 * y[1];
    },
    // m = 1
    [](const Powers& x, const Powers& y) {
      return 35 * x[7] + 105 * x[5] * y[2] + 105 * x[3] * y[4] + 35 * x[1] * y[6] - 60 * x[5] - 120 * x[3] * y[2] -
             60 * x[1] * y[4] + 30 * x[3] + 30 * x[1] * y[2] - 4 * x[1];
    },
    // m = 3
    [](const Powers& x, const Powers& y) {
      return 21 * x[7] - 21 * x[5] * y[2] - 105 * x[3] * y[4] - 63 * x[1] * y[6] - 30 * x[5] + 60 * x[3] * y[2] +
             90 * x[1] * y[4] + 10 * x[3] - 30 * x[1] * y[2];
    },
    // m = 5
    [](const Powers& x, const Powers& y) {
      return 7 * x[7] - 63 * x[5] * y[2] - 35 * x[3] * y[4] + 35 * x[1] * y[6] - 6 * x[5] + 60 * x[3] * y[2] -
             30 * x[1] * y[4];
    },
    // m = 7
    [](const Powers& x, const Powers& y) { return x[7] - 21 * x[5] * y[2] + 35 * x[3] * y[4] - 7 * x[1] * y[6]; },
}};

constexpr std::array<ZernikeTerm, 9> kOrder8 = {{
    // m = -8
    [](const Powers& x, const Powers& y) {
      return 8 * x[7] * y[1] - 56 * x[5] * y[3] + 56 * x[3] * y[5] - 8 * x[1] * y[7];
    },
    // m = -6
    [](const Powers& x, const Powers& y) {
      return 48 * x[7] * y[1] - 112 * x[5] * y[3] - 112 * x[3] * y[5] + 48 * x[1] * y[7] - 42 * x[5] * y[1] +
             140 * x[3] * y[3] - 42 * x[1] * y[5];
    },
    // m = -4
    [](const Powers& x, const Powers& y) {
      return 112 * x[7] * y[1] + 112 * x[5] * y[3] - 112 * x[3] * y[5] - 112 * x[1] * y[7] - 168 * x[5] * y[1] +
             168 * x[1] * y[5] + 60 * x[3] * y[1] - 60 * x[1] * y[3];
    },
    // m = -2
    [](const Powers& x, const Powers& y) {
      return 112 * x[7] * y[1] + 336 * x[5] * y[3] + 336 * x[3] * y[5] + 112 * x[1] * y[7] - 210 * x[5] * y[1] -
             420 * x[3] * y[3] - 210 * x[1] * y[5] + 120 * x[3] * y[1] + 120 * x[1] * y[3] - 20 * x[1] * y[1];
    },
    // m = 0
    [](const Powers& x, const Powers& y) {
      return 70 * x[8] + 280 * x[6] * y[2] + 420 * x[4] * y[4] + 280 * x[2] * y[6] + 70 * y[8] - 140 * x[6] -
             420 * x[4] * y[2] - 420 * x[2] * y[4] - 140 * y[6] + 90 * x[4] + 180 * x[2] * y[2] + 90 * y[4] -
             20 * x[2] - 20 * y[2] + 1.0;
    },
    // m = 2
    [](const Powers& x, const Powers& y) {
      return 56 * x[8] + 112 * x[6] * y[2] - 112 * x[2] * y[6] - 56 * y[8] - 105 * x[6] - 105 * x[4] * y[2] +
             105 * x[2] * y[4] + 105 * y[6] + 60 * x[4] - 60 * y[4] - 10 * x[2] + 10 * y[2];
    },
    // m = 4
    [](const Powers& x, const Powers& y) {
      return 28 * x[8] - 112 * x[6] * y[2] - 280 * x[4] * y[4] - 112 * x[2] * y[6] + 28 * y[8] - 42 * x[6] +
             210 * x[4] * y[2] + 210 * x[2] * y[4] - 42 * y[6] + 15 * x[4] - 90 * x[2] * y[2] + 15 * y[4];
    },
    // m = 6
    [](const Powers& x, const Powers& y) {
      return 8 * x[8] - 112 * x[6] * y[2] + 112 * x[2] * y[6] - 8 * y[8] - 7 * x[6] + 105 * x[4] * y[2] -
             105 * x[2] * y[4] + 7 * y[6];
    },
    // m = 8
    [](const Powers& x, const Powers& y) {
      return x[8] - 28 * x[6] * y[2] + 70 * x[4] * y[4] - 28 * x[2] * y[6] + y[8];
    },
}};
}  // namespace

constinit const std::array<ZernikeOrder, kZernikeOrders> ZernikeTermTable = {
    kOrder0, kOrder1, kOrder2, kOrder3, kOrder4, kOrder5, kOrder6, kOrder7, kOrder8};

Powers PowersOf(double a) {
  Powers powers = {1.0};
  for (std::size_t k = 1; k < powers.size(); ++k) powers[k] = powers[k - 1] * a;
  return powers;
}

}  // namespace orvanel
