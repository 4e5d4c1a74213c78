// Chooses the data, range and labels of each figure.
#include "drawing/figures.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "base/elementary.h"
#include "base/number_text.h"
#include "evaluation/model_notes.h"

namespace orvanel::drawing {
namespace {

constexpr double kDecades = 6.0;  // of the logarithmic figure

// The axis from the outer edge of the first sample of a window to that of the last.
template <class Unit>
Axis WindowAxis(Window window, const SampleAxis<Unit>& samples, const std::string& label) {
  const double pitch = samples.step.value(), first = (window.first - samples.centre - 0.5) * pitch;
  return {first, first + window.count * pitch, label};
}

// The axis of rows. Row 0 is at the top, so the value of a row is its negative distance downwards.
Axis Upwards(Axis rows) { return {-rows.first, -rows.last, rows.label}; }

std::string PupilText(const Results& results) { return NumberText(results.pupil.value(), 4) + " mm pupil"; }

// "3 mm pupil, classic model; a sample: 0.0841".
template <class Quantity>
std::string SampleNote(const Results& results, Quantity sample, const char* unit) {
  return PupilText(results) + ", " + ModelText(results) + "; a sample: " + NumberText(sample.value(), 4) + unit;
}

// The pupil, samples 64 to 192 of the classic plane, and a margin; or the whole map.
Window PupilWindow(const Results& results) {
  return results.model == ModelKind::kClassic ? Window{60, 137} : WholeOf(results.wavefront.map);
}

View ViewOf(const Results& results) { return results.physical ? results.physical->view : View::kRetina; }

double Highest(const Plane& plane) { return plane.empty() ? 1.0 : *std::max_element(plane.begin(), plane.end()); }

// "arc minutes", with the origin if it is not the axis.
std::string OriginText(const Results& results) {
  const bool isAxis = !results.physical || results.physical->origin == physical::Origin::kAxis;
  return isAxis ? "arc minutes" : std::string("arc minutes from the ") + Word(results.physical->origin);
}

// What 1 is: the classic PSF has 1 at its own peak.
std::string PsfUnitText(const Results& results) {
  return results.model == ModelKind::kClassic ? "of peak" : "of perfect";
}

// The window that contains every sample brighter than a hundredth of the peak.
Window BrightWindow(const Plane& psf) {
  const double threshold = 0.01 * Highest(psf);
  int reach = 0;
  for (int row = 0; row < psf.rows(); ++row) {
    for (int column = 0; column < psf.columns(); ++column) {
      if (psf.At(row, column) < threshold) continue;
      reach = std::max({reach, std::abs(row - psf.rows() / 2), std::abs(column - psf.columns() / 2)});
    }
  }
  return WindowFor(2 * reach + 1, psf);
}

std::string WindowText(Window window, const Plane& plane) {
  if (window.count == plane.columns()) return "whole plane";
  return "central " + std::to_string(window.count) + " of " + std::to_string(plane.columns()) + " samples";
}

PlaneFigure PsfBase(const Results& results, Side side, Window window) {
  PlaneFigure figure;
  figure.window = window;
  const std::string unit = OriginText(results);
  figure.x = WindowAxis(window, results.retinaAxis, "horizontal (" + unit + ")");
  figure.y = Upwards(WindowAxis(window, results.retinaAxis, "vertical, up (" + unit + ")"));
  figure.note = SampleNote(results, results.retinaAxis.step, "\u2032");
  constexpr double kNearlyAll = 0.99;
  if (results.physical && results.physical->psfLight < kNearlyAll) {
    figure.note += "; " + NumberText(100.0 * results.physical->psfLight, 3) + " % of the light";
  }
  figure.scaleBar = true;
  figure.map = &kInferno;
  figure.view = ViewOf(results);
  figure.side = side;
  return figure;
}

std::string PowerOfTen(int exponent) {
  static const char* const kDigits[] = {"\u2070", "\u00b9", "\u00b2", "\u00b3", "\u2074", "\u2075", "\u2076"};
  return exponent == 0 ? "1" : std::string("10\u207b") + kDigits[-exponent];
}

}  // namespace

std::string ModelText(const Results& results) { return std::string(Word(results.model)) + " model"; }

std::string StrehlText(const Results& results) {
  const std::string first = NumberText(results.strehl, 3), peak = NumberText(results.strehlPeak, 3);
  return results.model == ModelKind::kClassic ? first + " at the brightest sample, " + peak + " between samples"
                                              : first + " axis, " + peak + " peak";
}

PlaneFigure WavefrontFigure(const Results& results, Side side) {
  constexpr double kMinRange = 0.05;  // um; for a flat wavefront, whose range is 0
  const Wavefront& wavefront = results.wavefront;
  PlaneFigure figure;
  figure.title = "Wavefront aberration";
  figure.subtitle = "RMS " + NumberText(wavefront.rms.value(), 3) + " \u00b5m, peak to valley " +
                    NumberText(wavefront.peakToValley.value(), 3) + " \u00b5m";
  figure.note = PupilText(results) + ", " + ModelText(results);
  figure.window = PupilWindow(results);
  figure.x = WindowAxis(figure.window, results.pupilAxis, "pupil x (mm)");
  figure.y = Upwards(WindowAxis(figure.window, results.pupilAxis, "pupil y, up (mm)"));
  figure.view = View::kPupil;
  figure.side = side;
  figure.high = kMinRange;
  figure.values = wavefront.map;
  for (double& value : figure.values) {
    value = ToMicrometres(Millimetres(value)).value();
    if (std::abs(value) > figure.high) figure.high = std::abs(value);
  }
  figure.low = -figure.high;
  figure.map = &kDiverging;
  figure.barTicks = RoundTicks(figure.low, figure.high, 7);
  figure.barLabel = "\u00b5m";
  return figure;
}

PlaneFigure PsfFigure(const Results& results, Side side) {
  PlaneFigure figure = PsfBase(results, side, BrightWindow(results.psf));
  figure.title = "Point spread function";
  figure.subtitle = "Strehl ratio " + StrehlText(results);
  figure.values = results.psf;
  figure.low = 0.0;
  figure.high = results.model == ModelKind::kClassic ? 1.0 : Highest(results.psf);
  figure.barTicks = RoundTicks(0.0, figure.high, 5);
  figure.barLabel = PsfUnitText(results);
  return figure;
}

PlaneFigure PsfLogFigure(const Results& results, Side side) {
  PlaneFigure figure = PsfBase(results, side, WholeOf(results.psf));
  figure.title = "Point spread function, logarithmic";
  figure.subtitle = WindowText(figure.window, results.psf);
  const double peak = results.model == ModelKind::kClassic ? 1.0 : Highest(results.psf);
  figure.values = results.psf;
  for (double& v : figure.values) v = v > 0.0 ? Logarithm(v / peak) / std::numbers::ln10 : -kDecades;
  figure.low = -kDecades;
  figure.high = 0.0;
  for (int exponent = 0; exponent >= -static_cast<int>(kDecades); --exponent) {
    figure.barTicks.push_back({static_cast<double>(exponent), PowerOfTen(exponent)});
  }
  figure.barLabel = "of peak";
  return figure;
}

PlaneFigure MtfFigure(const Results& results) {
  PlaneFigure figure;
  figure.title = "Modulation transfer function";
  figure.subtitle = WindowText(WholeOf(results.mtf), results.mtf) + "; colours by square roots";
  // Square roots, since most values of an eye's MTF are far below 1.
  figure.values = results.mtf;
  for (double& v : figure.values) v = std::sqrt(v);
  figure.window = WholeOf(results.mtf);
  figure.x = WindowAxis(figure.window, results.frequencyAxis, "horizontal (cycles/degree)");
  figure.y = Upwards(WindowAxis(figure.window, results.frequencyAxis, "vertical, up (cycles/degree)"));
  figure.view = ViewOf(results);
  figure.side = Side::kUnknown;  // frequencies have no nasal side
  figure.note = SampleNote(results, results.frequencyAxis.step, " c/deg");
  figure.map = &kViridis;
  figure.low = 0.0;
  figure.high = 1.0;
  for (const double v : {0.0, 0.01, 0.05, 0.1, 0.2, 0.4, 0.6, 0.8, 1.0}) {
    figure.barTicks.push_back({std::sqrt(v), NumberText(v, 2)});
  }
  figure.barLabel = "transfer";
  return figure;
}

}  // namespace orvanel::drawing
