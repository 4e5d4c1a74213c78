// Compares two eyes: their refractions, wavefronts, coefficients and metrics of image quality, under one set of
// conditions.
#ifndef ORVANEL_EVALUATION_COMPARISON_COMPARISON_H
#define ORVANEL_EVALUATION_COMPARISON_COMPARISON_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/layers.h"
#include "evaluation/simulated_eye.h"
#include "models/physical_settings.h"

namespace orvanel::evaluation {

// The conditions of both eyes.
struct ComparisonRequest {
  Adjustments adjustments;
  PhysicalSettings settings;
  QualityRequest metrics;
  bool planes = false;   // also wavefront, PSF and MTF
  bool letters = false;  // also images of letters
};

// One eye of a comparison, by the physical model. Throws as Adjusted, Evaluator and QualityEvaluator do.
SimulatedEye Viewed(const Eye& measured, const ComparisonRequest& request);

// A number of both eyes.
struct ComparedNumber {
  std::string name;         // "RMS", "Z4"
  std::string description;  // "orders 2 and above", "defocus", the definition of a metric
  std::string unit;         // "1" for pure numbers
  double a = 0.0, b = 0.0;
  double difference = 0.0;  // b - a; not a number where it has no meaning
};

struct Comparison {
  SimulatedEye a, b;
  QualityRequest metricRequest;
  std::vector<ComparedNumber> refractions;   // M, J0 and J45 of the correcting lens, by least squares
  std::vector<ComparedNumber> rms;           // orders 2 and above; 3 and above
  std::vector<ComparedNumber> coefficients;  // orthonormal, um, y up; those that are not 0 in both eyes
  std::vector<ComparedNumber> metrics;
  // The RMS of the wavefront b - a, which is not the difference of both RMS. Empty if the pupils differ.
  std::optional<Micrometres> differenceRms, higherDifferenceRms;
  std::vector<std::string> notes;  // sentences: what the eyes do not have in common, and notes of metrics

  // Wavefronts over different pupils have no difference.
  bool hasOnePupil() const { return a.eye.pupil == b.eye.pupil; }
};

//   a, b  of one request
Comparison Compared(SimulatedEye a, SimulatedEye b);

// The coefficients of orders 2 and above that differ most, at most so many, in falling order. Coefficients without a
// difference are those that are largest.
std::vector<ComparedNumber> LargestOf(const std::vector<ComparedNumber>& coefficients, std::size_t most);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_COMPARISON_COMPARISON_H
