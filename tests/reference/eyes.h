// Defines asymmetric eyes with many terms, so that mirrored, transposed or rotated results fail.
#ifndef ORVANEL_TESTS_REFERENCE_EYES_H
#define ORVANEL_TESTS_REFERENCE_EYES_H

#include <cstddef>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace orvanel::reference {

struct Eye {
  std::string name;
  double diameter;
  std::vector<double> coefficients;
};

inline void PrintTo(const Eye& eye, std::ostream* out) { *out << eye.name; }

// Several waves of one kind mixed with a little of every other. Piston and tilts must not matter.
inline Eye MakeEye(const std::string& name, double diameter, const std::vector<std::pair<std::size_t, double>>& terms) {
  Eye eye{name, diameter, std::vector<double>(28)};
  for (std::size_t j = 0; j < 28; ++j) {
    eye.coefficients[j] = 1.3e-5 * static_cast<double>(j % 5) - 2.1e-5 * static_cast<double>(j % 3);
  }
  eye.coefficients[0] = 0.7, eye.coefficients[1] = -0.4, eye.coefficients[2] = 0.9;
  for (const auto& [index, value] : terms) eye.coefficients[index] = value;
  return eye;
}

inline const std::vector<Eye>& Eyes() {
  static const std::vector<Eye> eyes = {
      MakeEye("Coma", 2.7, {{3, 2.2e-4}, {4, 9.1e-4}, {7, 5.3e-4}, {8, -3.1e-4}}),
      MakeEye("Trefoil", 4.1, {{4, -1.13e-3}, {5, 6.1e-4}, {6, -7.7e-4}, {9, 4.1e-4}, {12, 1.9e-4}}),
      MakeEye("SecondaryAstigmatism", 6.3, {{4, 1.31e-3}, {11, 5.9e-4}, {13, -8.3e-4}, {17, 2.6e-4}, {22, 1.1e-4}})};
  return eyes;
}

}  // namespace orvanel::reference

#endif  // ORVANEL_TESTS_REFERENCE_EYES_H
