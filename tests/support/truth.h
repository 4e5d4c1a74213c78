// Declares the eyes of tests/golden/truth/truth.txt, and the differences between library and script.
#ifndef ORVANEL_TESTS_SUPPORT_TRUTH_H
#define ORVANEL_TESTS_SUPPORT_TRUTH_H

#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/planes.h"

namespace orvanel::reference {

struct TrueSample {
  int row, column;
  Real value, imaginary;
};

struct TrueEye {
  std::string name;
  double diameter;
  std::vector<double> coefficients;
  int peakRow, peakColumn;
  std::map<std::string, Real> scalars;
  std::map<std::string, std::vector<TrueSample>> samples;
};

void PrintTo(const TrueEye& eye, std::ostream* out);

// Throws std::runtime_error with the line that it cannot read.
std::vector<TrueEye> ReadTruth(const std::string& file);

struct Deviation {
  std::string what;
  Real largest, bound;  // of scalars and the Strehl ratio relative to the truth, of the peak in samples
};

// Of everything that the truth has of an eye.
std::vector<Deviation> DeviationsFromTruth(const TrueEye& eye);

}  // namespace orvanel::reference

#endif  // ORVANEL_TESTS_SUPPORT_TRUTH_H
