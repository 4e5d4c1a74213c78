// Reads tests/reference/physical/truth.txt: eyes, and their PSFs, Strehl ratios and OTFs by an independent script.
#ifndef ORVANEL_TESTS_SUPPORT_PHYSICAL_TRUTH_H
#define ORVANEL_TESTS_SUPPORT_PHYSICAL_TRUTH_H

#include <complex>
#include <ostream>
#include <string>
#include <vector>

#include "models/physical/point_spread.h"
#include "models/physical/transfer_function.h"

namespace orvanel::physical {

struct TrueEye {
  template <class T>
  struct Sample {
    int row = 0;
    int column = 0;
    T value{};
  };

  std::string name;
  Eye eye;
  Light light;
  RetinalGrid grid;
  FrequencyGrid frequencies;
  double strehlOnAxis = 0.0;
  double strehlAtPeak = 0.0;
  bool hasOnePeak = false;          // no other place is nearly as high
  double peakX = 0.0, peakY = 0.0;  // then; arcmin of the view
  std::vector<Sample<double>> psf;  // of the grid, in Strehl units
  std::vector<Sample<std::complex<double>>> otf;
};

void PrintTo(const TrueEye& eye, std::ostream* out);

// Throws std::runtime_error with the line that it cannot read.
std::vector<TrueEye> ReadPhysicalTruth(const std::string& file);

// Of one name; throws std::runtime_error if there is none.
TrueEye ReadPhysicalTruth(const std::string& file, const std::string& name);

// Largest differences from the truth; infinite where a result is not a number.
double PsfError(const TrueEye& truth, const std::vector<double>& samples);
double OtfError(const TrueEye& truth, const TransferFunction& otf);
double OtfError(const TrueEye& truth, const std::vector<std::complex<double>>& atTruth);

// The frequencies of the OTF's samples.
std::vector<Frequency> FrequenciesOf(const TrueEye& truth);

}  // namespace orvanel::physical

#endif  // ORVANEL_TESTS_SUPPORT_PHYSICAL_TRUTH_H
