// Chooses the data, range and labels of each figure.
#include "drawing/figures.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "base/elementary.h"
#include "base/number_text.h"

namespace orvanel::drawing {
namespace {

constexpr double kCentre = ORVANEL_GRID_SIZE / 2;
constexpr Window kPupilWindow{60, 137};  // the pupil, samples 64 to 192, and a margin
constexpr double kDecades = 6.0;         // of the logarithmic figure

// The axis from the outer edge of the first sample of a window to that of the last.
Axis WindowAxis(Window window, double pitch, const std::string& label) {
  const double first = (window.first - kCentre - 0.5) * pitch;
  return {first, first + window.count * pitch, label};
}

// The axis of rows. Row 0 is at the top, so the value of a row is its negative distance downwards.
Axis Upwards(Axis rows) { return {-rows.first, -rows.last, rows.label}; }

std::string PupilText(const Results& results) { return NumberText(results.pupil.value(), 4) + " mm pupil"; }

// The sample spacing in the axes' unit, on both scales.
template <class Quantity>
std::string SampleNote(const Results& results, Quantity library, Quantity optical) {
  return "A sample: " + NumberText(library.value(), 4) + "; optical scale (" + PupilText(results) +
         "): " + NumberText(optical.value(), 4);
}

// The window that contains every sample brighter than a hundredth of the peak.
Window BrightWindow(const Plane& psf) {
  int reach = 0;
  for (int row = 0; row < psf.rows(); ++row) {
    for (int column = 0; column < psf.columns(); ++column) {
      if (psf.At(row, column) < 0.01) continue;
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
  const double pitch = results.scales.library.pitch.value();
  figure.x = WindowAxis(window, pitch, "horizontal (arc minutes, library scale)");
  figure.y = Upwards(WindowAxis(window, pitch, "vertical, up (arc minutes)"));
  figure.note = SampleNote(results, results.scales.library.pitch, results.scales.optical.pitch);
  figure.map = &kInferno;
  figure.view = View::kRetina;
  figure.side = side;
  return figure;
}

std::string PowerOfTen(int exponent) {
  static const char* const kDigits[] = {"\u2070", "\u00b9", "\u00b2", "\u00b3", "\u2074", "\u2075", "\u2076"};
  return exponent == 0 ? "1" : std::string("10\u207b") + kDigits[-exponent];
}

}  // namespace

PlaneFigure WavefrontFigure(const Results& results, Side side) {
  constexpr double kMinRange = 0.05;  // um; for a flat wavefront, whose range is 0
  const Wavefront& wavefront = results.wavefront;
  const double pitch = results.pupil.value() / 2.0 / (ORVANEL_GRID_SIZE / 4);
  PlaneFigure figure;
  figure.title = "Wavefront aberration";
  figure.subtitle = "RMS " + NumberText(wavefront.rms.value(), 3) + " \u00b5m, peak to valley " +
                    NumberText(wavefront.peakToValley.value(), 3) + " \u00b5m";
  figure.note = "True positions in the " + PupilText(results);
  figure.window = kPupilWindow;
  figure.x = WindowAxis(kPupilWindow, pitch, "pupil x (mm)");
  figure.y = Upwards(WindowAxis(kPupilWindow, pitch, "pupil y, up (mm)"));
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
  figure.subtitle = "Strehl ratio " + NumberText(results.strehl, 3) + "; " + WindowText(figure.window, results.psf);
  figure.values = results.psf;
  figure.low = 0.0;
  figure.high = 1.0;
  figure.barTicks = RoundTicks(0.0, 1.0, 5);
  figure.barLabel = "of peak";
  return figure;
}

PlaneFigure PsfLogFigure(const Results& results, Side side) {
  PlaneFigure figure = PsfBase(results, side, WholeOf(results.psf));
  figure.title = "Point spread function, logarithmic";
  figure.subtitle = WindowText(figure.window, results.psf);
  figure.values = results.psf;
  for (double& v : figure.values) v = v > 0.0 ? Logarithm(v) / std::numbers::ln10 : -kDecades;
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
  const double step = results.scales.library.step.value();
  figure.x = WindowAxis(figure.window, step, "horizontal (cycles/degree, library scale)");
  figure.y = Upwards(WindowAxis(figure.window, step, "vertical, up (cycles/degree)"));
  figure.view = View::kRetina;
  figure.side = Side::kUnknown;  // frequencies have no nasal side
  figure.note = SampleNote(results, results.scales.library.step, results.scales.optical.step);
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
