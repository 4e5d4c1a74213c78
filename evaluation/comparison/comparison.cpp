// Evaluates both eyes and subtracts their numbers.
#include "evaluation/comparison/comparison.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/number_text.h"
#include "evaluation/evaluator.h"
#include "evaluation/quality_evaluator.h"
#include "evaluation/warnings.h"
#include "eye/conventions/column_name.h"
#include "eye/plausibility.h"
#include "eye/refraction.h"
#include "eye/rms.h"
#include "metrics/quality_names.h"

namespace orvanel::evaluation {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr Needs kPlanes = {Need::kWavefront, Need::kWavefrontRange, Need::kStrehl, Need::kStrehlPeak, Need::kPsf,
                           Need::kMtf,       Need::kSections};

ComparedNumber Pair(std::string name, std::string description, std::string unit, double a, double b) {
  return {std::move(name), std::move(description), std::move(unit), a, b, b - a};
}

double Element(const Coefficients& osa, std::size_t j) { return j < osa.size() ? osa[j] : 0.0; }

void AddRefractions(const Eye& a, const Eye& b, Comparison& comparison) {
  const PowerVector ofA = LeastSquaresRefraction(a.coefficients.osa(), a.pupil);
  const PowerVector ofB = LeastSquaresRefraction(b.coefficients.osa(), b.pupil);
  comparison.refractions = {Pair("M", "mean sphere", "D", ofA.m.value(), ofB.m.value()),
                            Pair("J0", "crossed cylinder at 0 degrees", "D", ofA.j0.value(), ofB.j0.value()),
                            Pair("J45", "crossed cylinder at 45 degrees", "D", ofA.j45.value(), ofB.j45.value())};
}

void AddCoefficients(const Eye& a, const Eye& b, Comparison& comparison) {
  const Coefficients &ofA = a.coefficients.osa(), &ofB = b.coefficients.osa();
  const bool onePupil = comparison.hasOnePupil();
  Coefficients change;
  for (std::size_t j = 0; j < std::max(ofA.size(), ofB.size()); ++j) {
    const ZernikeTerm term = Term(j);
    ComparedNumber pair = Pair(NameIn(IndexScheme::kOsa, term), Name(term), "um", Element(ofA, j), Element(ofB, j));
    change.push_back(pair.difference);
    if (!onePupil) pair.difference = kNan;
    if (pair.a != 0.0 || pair.b != 0.0) comparison.coefficients.push_back(std::move(pair));
  }
  for (const int order : {kLowestOrderThatBlurs, kLowestHigherOrder}) {
    comparison.rms.push_back(Pair(order == kLowestOrderThatBlurs ? "RMS" : "RMS 3+",
                                  "orders " + std::to_string(order) + " and above", "um", Rms(ofA, order).value(),
                                  Rms(ofB, order).value()));
  }
  if (!onePupil) return;
  comparison.differenceRms = Rms(change, kLowestOrderThatBlurs);
  comparison.higherDifferenceRms = Rms(change, kLowestHigherOrder);
}

void AddMetrics(const Quality& a, const Quality& b, Comparison& comparison) {
  const QualityRequest& request = comparison.metricRequest;
  const std::vector<double> ofA = ValuesOf(a), ofB = ValuesOf(b);
  const std::vector<QualityColumn> columns = ColumnsOf(request);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const char* const definition = i < request.metrics.size()
                                       ? RowOf(request.metrics[i]).definition
                                       : "MTF at this frequency in cycles/degree, mean over all directions.";
    comparison.metrics.push_back(Pair(columns[i].name, definition, columns[i].unit, ofA[i], ofB[i]));
  }
}

std::string WavelengthText(const Eye& eye) {
  return eye.referenceWavelength ? ShortestText(eye.referenceWavelength->value()) + " nm" : "no stated wavelength";
}

// One sentence for each kind of note, with the metrics that have it.
void AddNotesOfMetrics(const std::string& label, const Quality& quality, std::vector<std::string>& notes) {
  std::vector<std::pair<QualityNote, std::string>> named;
  for (const QualityValue& value : quality.values) {
    if (value.note == QualityNote::kNone) continue;
    const std::string name = RowOf(value.metric).name;
    const auto same =
        std::find_if(named.begin(), named.end(), [&](const auto& pair) { return pair.first == value.note; });
    if (same == named.end()) {
      named.emplace_back(value.note, name);
    } else {
      same->second += ", " + name;
    }
  }
  for (const auto& [note, names] : named) notes.push_back(names + " of " + label + ": " + metrics::TextOf(note) + ".");
}

void AddNotes(Comparison& comparison) {
  const SimulatedEye &a = comparison.a, &b = comparison.b;
  std::vector<std::string>& notes = comparison.notes;
  if (!comparison.hasOnePupil()) {
    notes.push_back("The pupils differ, " + ShortestText(a.eye.pupil.value()) + " and " +
                    ShortestText(b.eye.pupil.value()) +
                    " mm: coefficients and wavefronts have no difference. Rescale both eyes to one pupil.");
  }
  if (a.eye.side != b.eye.side) {
    const bool bothKnown = a.eye.side != Side::kUnknown && b.eye.side != Side::kUnknown;
    notes.push_back(bothKnown ? "A is " + SideText(a.eye.side) + " and B is " + SideText(b.eye.side) +
                                    ": their nasal sides are opposite. Mirror both to one laterality to compare "
                                    "places of the wavefront."
                              : std::string("The laterality of ") + (a.eye.side == Side::kUnknown ? "A" : "B") +
                                    " is not stated: B - A has a meaning for two eyes of one side.");
  }
  if (a.eye.referenceWavelength != b.eye.referenceWavelength) {
    notes.push_back("The coefficients hold at different wavelengths: A at " + WavelengthText(a.eye) + ", B at " +
                    WavelengthText(b.eye) + ".");
  }
  AddNotesOfMetrics("A", *a.quality, notes);
  AddNotesOfMetrics("B", *b.quality, notes);
}

}  // namespace

SimulatedEye Viewed(const Eye& measured, const ComparisonRequest& request) {
  SimulatedEye viewed;
  viewed.measured = measured;
  viewed.eye = Adjusted(measured, request.adjustments, &viewed.dropped);
  viewed.changes = Changes(measured, request.adjustments);
  Evaluator evaluator({ModelKind::kPhysical, request.settings});
  viewed.results = evaluator.Evaluate(viewed.eye, request.planes ? kPlanes : Needs());
  viewed.qualityRequest = request.metrics;
  viewed.quality = QualityEvaluator(request.settings, request.metrics).Evaluate(viewed.eye);
  if (request.letters) viewed.letters = SeeLetters(viewed.eye, request.settings);
  viewed.warnings = EyeWarnings(viewed.eye);
  if (request.letters && !viewed.letters) {
    viewed.warnings.emplace_back("the blur is too wide for images of letters");
  }
  if (request.planes) {
    for (std::string& warning : Warnings(viewed.results)) viewed.warnings.push_back(std::move(warning));
  }
  if (viewed.dropped && viewed.dropped->rms > Micrometres(0.0)) viewed.warnings.push_back(Text(*viewed.dropped));
  return viewed;
}

Comparison Compared(SimulatedEye a, SimulatedEye b) {
  Comparison comparison;
  comparison.metricRequest = a.qualityRequest;
  comparison.a = std::move(a);
  comparison.b = std::move(b);
  AddRefractions(comparison.a.eye, comparison.b.eye, comparison);
  AddCoefficients(comparison.a.eye, comparison.b.eye, comparison);
  AddMetrics(*comparison.a.quality, *comparison.b.quality, comparison);
  AddNotes(comparison);
  return comparison;
}

std::vector<ComparedNumber> LargestOf(const std::vector<ComparedNumber>& coefficients, std::size_t most) {
  std::vector<ComparedNumber> largest;
  for (const ComparedNumber& pair : coefficients) {
    if (pair.name != "Z0" && pair.name != "Z1" && pair.name != "Z2") largest.push_back(pair);
  }
  const auto size = [](const ComparedNumber& pair) {
    return std::isnan(pair.difference) ? std::max(std::abs(pair.a), std::abs(pair.b)) : std::abs(pair.difference);
  };
  std::stable_sort(largest.begin(), largest.end(),
                   [&size](const ComparedNumber& a, const ComparedNumber& b) { return size(a) > size(b); });
  if (largest.size() > most) largest.resize(most);
  return largest;
}

}  // namespace orvanel::evaluation
