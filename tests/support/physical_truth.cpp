// The physical model's results against an independent script's.
#include "tests/support/physical_truth.h"

#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace orvanel::physical {
namespace {

void ReadLine(std::istringstream& line, const std::string& what, TrueEye& truth) {
  Eye& eye = truth.eye;
  if (what == "eye") {
    std::string view;
    Ellipse& e = eye.outline;
    StilesCrawford& s = eye.stilesCrawford;
    line >> eye.diameterMm >> eye.referenceNm >> view >> e.semiAxisA >> e.semiAxisB >> e.angle >> e.centreX >>
        e.centreY >> s.rho >> s.centreXmm >> s.centreYmm >> eye.achromaticAxisXmm >> eye.achromaticAxisYmm;
    if (view != "patient" && view != "retina") line.setstate(std::ios::failbit);
    truth.grid.view = truth.frequencies.view = view == "patient" ? View::kPatient : View::kRetina;
  } else if (what == "mode") {
    std::size_t j = kModes;
    line >> j;
    if (j < kModes) line >> eye.modesUm[j];
  } else if (what == "light") {
    SpectralLine& spectral = truth.light.emplace_back();
    line >> spectral.wavelengthNm >> spectral.weight;
  } else if (what == "grid") {
    line >> truth.grid.spacing >> truth.grid.columns;
    truth.grid.rows = truth.grid.columns;
  } else if (what == "frequencies") {
    line >> truth.frequencies.step >> truth.frequencies.side;
  } else if (what == "strehl") {
    line >> truth.strehlOnAxis;
  } else if (what == "peak") {
    line >> truth.strehlAtPeak;
    truth.hasOnePeak = !line.eof();
    if (truth.hasOnePeak) line >> truth.peakX >> truth.peakY;
  } else if (what == "psf") {
    auto& sample = truth.psf.emplace_back();
    line >> sample.row >> sample.column >> sample.value;
  } else if (what == "otf") {
    auto& sample = truth.otf.emplace_back();
    double re = 0.0, im = 0.0;
    line >> sample.row >> sample.column >> re >> im;
    sample.value = {re, im};
  } else {
    line.setstate(std::ios::failbit);
  }
}

double Larger(double largest, double difference) {
  if (std::isnan(difference)) return std::numeric_limits<double>::infinity();
  return difference > largest ? difference : largest;
}

}  // namespace

void PrintTo(const TrueEye& eye, std::ostream* out) { *out << eye.name; }

std::vector<TrueEye> ReadPhysicalTruth(const std::string& file) {
  std::ifstream in(file);
  std::vector<TrueEye> eyes;
  for (std::string text; std::getline(in, text);) {
    std::istringstream line(text);
    std::string name, what;
    line >> name >> what;
    if (eyes.empty() || eyes.back().name != name) eyes.emplace_back().name = name;
    ReadLine(line, what, eyes.back());
    if (line.fail()) throw std::runtime_error(file + ": cannot read: " + text);
  }
  if (eyes.empty()) throw std::runtime_error(file + ": cannot read any line");
  return eyes;
}

TrueEye ReadPhysicalTruth(const std::string& file, const std::string& name) {
  for (TrueEye& eye : ReadPhysicalTruth(file)) {
    if (eye.name == name) return eye;
  }
  throw std::runtime_error(file + ": no eye " + name);
}

double PsfError(const TrueEye& truth, const std::vector<double>& samples) {
  double largest = 0.0;
  for (const auto& sample : truth.psf) {
    const double value = samples.at(static_cast<std::size_t>(sample.row * truth.grid.columns + sample.column));
    largest = Larger(largest, std::fabs(value - sample.value));
  }
  return largest;
}

double OtfError(const TrueEye& truth, const TransferFunction& otf) {
  std::vector<std::complex<double>> values;
  for (const auto& sample : truth.otf) {
    const auto i = static_cast<std::size_t>(sample.row * otf.grid.side + sample.column);
    values.emplace_back(otf.re.at(i), otf.im.at(i));
  }
  return OtfError(truth, values);
}

double OtfError(const TrueEye& truth, const std::vector<std::complex<double>>& atTruth) {
  double largest = 0.0;
  for (std::size_t i = 0; i < truth.otf.size(); ++i) {
    largest = Larger(largest, std::abs(atTruth.at(i) - truth.otf[i].value));
  }
  return largest;
}

std::vector<Frequency> FrequenciesOf(const TrueEye& truth) {
  const FrequencyGrid& grid = truth.frequencies;
  std::vector<Frequency> frequencies;
  for (const auto& sample : truth.otf) {
    frequencies.push_back({(sample.column - grid.side / 2) * grid.step, (grid.side / 2 - sample.row) * grid.step});
  }
  return frequencies;
}

}  // namespace orvanel::physical
