// Metrics of image quality that need the wavefront alone.
#ifndef ORVANEL_METRICS_QUALITY_PUPIL_METRICS_H
#define ORVANEL_METRICS_QUALITY_PUPIL_METRICS_H

#include <array>
#include <cstddef>

#include "models/physical/pupil/pupil.h"

namespace orvanel::metrics {

// A wavefront over the unit disc that its outline is mapped to. Means over the pupil are means over the disc, all
// places count alike. "Below" a limit leaves out what is within 1e-9 of it, so that rounding does not decide for a
// pupil that meets it exactly.
class PupilMetrics {
 public:
  explicit PupilMetrics(const physical::Pupil& pupil);

  double RmsW() const;  // um
  double Pv() const;    // um
  double RmsS() const;  // arcmin
  double Bave() const;  // D

  // Their derivatives by the modes in um; not numbers where the metric is 0.
  using Gradient = std::array<double, physical::kModes>;
  Gradient GradientOfRmsW() const;
  Gradient GradientOfRmsS() const;
  Gradient GradientOfBave() const;

  // The share of the largest concentric pupil in which a mean, and that in all smaller ones, is below its limit.
  double LargestByRmsW() const;
  double LargestByRmsS() const;
  double LargestByBave() const;

  // Shares of the area where something is below its limit.
  double TilesBelow() const;   // the variation of the wavefront in a tile
  double SlopesBelow() const;  // both slopes
  double BlurBelow() const;

  static constexpr double kSlopeLimitArcmin = 1.0;
  static constexpr double kBlurLimitD = 0.25;

 private:
  physical::Polynomial wavefront_;        // um
  physical::Polynomial slopeX_, slopeY_;  // arcmin
  physical::Polynomial xx_, xy_, yy_;     // D
  bool wholePupil_;
  physical::Pupil pupil_;  // evenly bright
};

}  // namespace orvanel::metrics

#endif  // ORVANEL_METRICS_QUALITY_PUPIL_METRICS_H
