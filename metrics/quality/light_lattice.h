// Sums over the light of an eye, sampled on one lattice of directions, and over its transfer function.
#ifndef ORVANEL_METRICS_QUALITY_LIGHT_LATTICE_H
#define ORVANEL_METRICS_QUALITY_LIGHT_LATTICE_H

#include <array>
#include <complex>
#include <cstddef>
#include <vector>

#include "metrics/quality/contrast_sensitivity.h"
#include "models/physical/otf/flat_overlap.h"
#include "models/physical/window/light_window.h"
#include "models/physical/window/paraboloid.h"

namespace orvanel::metrics {

// A direction in arcmin, in the sense of DirectionGrid.
struct Place {
  double x = 0.0;
  double y = 0.0;
};

// What the light is weighted with.
struct Weighting {
  ContrastSensitivity contrast;
  double gaussianSd = 1.0;  // arcmin
  bool operator==(const Weighting&) const = default;
};

// A pupil without aberration in some light, and what depends on it alone.
struct PerfectLight {
  std::vector<physical::Beam> beams;
  std::vector<double> factors;  // of |U|^2, so that the sum is the density per arcmin^2
  double peak = 0.0;            // density on the axis
  double light = 1.0;           // mean of the squared amplitude
  double unit = 0.0;            // the smallest wavelength / diameter, arcmin
};
PerfectLight PerfectLightOf(const std::vector<physical::Beam>& beams, physical::ChordQuadrature& quadrature);

// Tables for windows of one side, for one pupil, light and weighting. Frequencies are in cycles per arcmin, on a
// lattice of step 1 / period. Those of the weights are few: up to the end of the contrast sensitivity. For them every
// second sample of the window is enough where the pupil is large.
class LightLattice {
 public:
  //   side  of the window; even, and so that half of it has a transform
  LightLattice(const PerfectLight& perfect, int side, const Weighting& weighting, physical::Workspace& workspace);

  int side() const { return side_; }
  const Weighting& weighting() const { return weighting_; }

  // The transfer function at low frequencies, about the middle of the window. The samples' error at the rim of the
  // pupil is corrected by that of a flat pupil.
  struct LowFrequencies {
    double centreX = 0.0, centreY = 0.0;
    std::vector<double> re, im;
  };
  LowFrequencies LowOf(const physical::LightWindow& window, physical::Workspace& workspace) const;

  // The light weighted by the contrast sensitivity's transform, or by the Gaussian, about a place.
  physical::Paraboloid Neural(const LowFrequencies& low, Place place) const { return Weighted(low, contrast_, place); }
  physical::Paraboloid Gaussian(const LowFrequencies& low, Place place) const {
    return Weighted(low, gaussian_, place);
  }
  // The place where that is largest.
  physical::Peak LargestNeural(const physical::LightWindow& window, const LowFrequencies& low,
                               physical::Workspace& workspace) const;
  // The weights of the samples of WindowOfLow's window, in workspace.weights, whose sum is a combination of the values
  // and slopes of Neural and Gaussian about a place.
  //   place  from the window's centre
  struct LowWeights {
    double value = 0.0, x = 0.0, y = 0.0;
  };
  void WeightsOfLow(Place place, const LowWeights& neural, const LowWeights& gaussian,
                    physical::Workspace& workspace) const;
  physical::LightWindow WindowOfLow(const physical::LightWindow& window) const;

  // Means over all directions of the modulus and the real part of the OTF about a place. Frequencies have equal steps
  // from 0 to the end of the contrast sensitivity, or of the OTF.
  struct Means {
    double step = 0.0;
    std::vector<double> mtf, otf;
    std::vector<std::complex<double>> points;  // samples of the OTF, about the window's centre
  };
  Means MeansOf(const physical::LightWindow& window, Place place, physical::Workspace& workspace) const;
  struct MeanWeights {
    std::vector<double> mtf, otf;  // as many as the means
  };
  // Derivatives by the place.
  struct Slope {
    double x = 0.0;
    double y = 0.0;
  };
  // The weights, as of WeightsOfLow, whose sum changes as the wanted sum of means does.
  Slope WeightsOfMeans(const physical::LightWindow& window, const Means& means, Place place, const MeanWeights& wanted,
                       physical::Workspace& workspace) const;

  // All frequencies.
  struct Volumes {
    double modulus = 0.0;  // of the OTF
    double squaredModulus = 0.0;
  };
  // The encircled light about a place, as a sum over radial frequencies.
  class Circles {
   public:
    double Within(double radius) const;
    double SlopeAt(double radius) const;  // of Within, by the radius
    // The radius of the circle with a share of the light; not a number where the largest has less.
    //   first  a radius to start from
    double RadiusOf(double share, double first, double largest) const;

   private:
    friend class LightLattice;
    double step_ = 0.0;
    std::vector<double> weights_;
  };
  // The spectrum of the window's samples, which the others read.
  void TransformAll(const physical::LightWindow& window, physical::Workspace& workspace);
  Volumes VolumesOf(physical::Workspace& workspace) const;
  // The weights of the window's samples whose sum changes as the wanted sum of volumes does; in workspace.weights.
  void WeightsOfVolumes(const Volumes& wanted, physical::Workspace& workspace) const;
  Circles CirclesAbout(const physical::LightWindow& window, Place place, physical::Workspace& workspace);
  // The weights of the window's samples whose sum is the light within a circle, after CirclesAbout.
  Slope WeightsOfCircle(const physical::LightWindow& window, Place place, double radius,
                        physical::Workspace& workspace) const;
  // Area, in arcmin^2, where the autocorrelation of the light is above half of its maximum.
  //   width  of the square that holds the light, except for the pattern of a perfect pupil
  double AreaOfAutocorrelation(double width, physical::Workspace& workspace) const;

  static constexpr int kTaps = 6;  // of interpolation between frequencies

 private:
  struct Run {  // of the lowest frequencies: column q, rows first to first + count - 1
    int q, first, count;
    std::size_t at;
  };

  static constexpr int kRadialTaps = 6;
  static constexpr int kRadialNodes = 2;  // a step of the frequencies
  struct Radial {                         // of all frequencies but conjugates: its radial nodes
    int row, q, first;
    std::array<double, kRadialTaps> weights;
  };

  physical::Paraboloid Weighted(const LowFrequencies& low, const std::vector<double>& weights, Place place) const;
  void MakeRuns(double farthest);
  void MakeCorrection(const PerfectLight& perfect, physical::Workspace& workspace);
  void MakeWeights(const PerfectLight& perfect);
  void MakePolar();
  int FarthestFine() const;  // fine frequency that the means need
  void Decimate(const physical::LightWindow& window, double* samples) const;
  double Exact(double fx, double fy) const;

  int side_, decimation_, width_;
  double unit_, spacing_, period_;
  Weighting weighting_;
  struct Part {
    double share, unit;
  };
  std::vector<Part> parts_;  // of the light
  physical::FlatOverlap overlap_;
  double rim_ = 1.0;   // transmission at the rim, over the mean
  double cusp_ = 0.0;  // slope of the OTF at frequency 0
  std::vector<Run> runs_;
  std::size_t count_ = 0;
  std::vector<double> correction_, contrast_, gaussian_;  // of the low frequencies
  std::vector<double> flat_;                              // samples of an evenly bright pupil's light, times rim_
  // Of all frequencies: rows x (side / 2 + 1).
  std::vector<double> allCorrection_;
  physical::AlignedMemory spectrum_;
  std::vector<Radial> radial_;  // made when first needed
  struct PolarPlace {           // of the means: weights of fine frequencies from the first on
    double perfect;             // what an evenly bright pupil without aberration has there, times rim_
    int firstP, firstQ;
    std::array<double, kTaps> alongP, alongQ;
  };
  int radii_ = 0, directions_ = 0;
  double radialStep_ = 0.0;
  std::vector<PolarPlace> polar_;
  std::vector<double> compensation_;
};

}  // namespace orvanel::metrics

#endif  // ORVANEL_METRICS_QUALITY_LIGHT_LATTICE_H
