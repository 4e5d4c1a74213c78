// The light that the rim of a pupil sends far from the image of a point.
#ifndef ORVANEL_MODELS_PHYSICAL_IMAGE_FAR_LIGHT_H
#define ORVANEL_MODELS_PHYSICAL_IMAGE_FAR_LIGHT_H

#include <array>
#include <complex>

#include "models/physical/pupil/pupil.h"

namespace orvanel::physical {

constexpr int kRimPlaces = 64;  // from which rays are traced

// A smooth density whose light far from its middle is that of the pupil's PSF in the mean, and which has closed forms
// in both domains. The difference from the PSF falls faster, so that it needs less room on a periodic lattice.
//
// The PSF of a hard rim falls with the inverse cube of the distance q: its mean over rings is 1/(pi^3 q^3), in squared
// wavelengths / diameter, for a round pupil (Airy). Slopes of the wavefront at the rim add 3 v/q^5, v the mean of the
// squared slope across the rim and half of that along it. Both are the odd powers of the OTF's series about frequency
// 0: those of |f| and |f|^3. Here exp(-2 pi alpha |f|) (1 + c |f|^2) has them. Source for the rays from the rim: Keller
// (1962). Source for the pair of transforms: Poisson's kernel of the half space.
class FarLight {
 public:
  // The width is at least `smoothness`, and a third of `guard`. Both are in units of wavelength / diameter.
  FarLight(const Pupil& pupil, double lightOfPupil, double guard, double smoothness);

  // Its transform in the sense of OtfOverlap, fx and fy in units of diameter / wavelength; 1 is all light of the PSF.
  std::complex<double> Spectrum(double fx, double fy) const;
  double total() const { return total_; }

  // The smallest length over which the density changes, in wavelength / diameter.
  double narrowest() const { return narrowest_; }

  // The density per squared wavelength / diameter, x and y in the sense of DirectionGrid.
  double Density(double x, double y) const;

  // Bounds of the difference from the PSF, for an object of luminance 1 whose nearest place is `distance` away along x
  // or y. The object fills two half planes, one beyond x and one beyond y, or one squared wavelength / diameter.
  // Infinite where rays come close to it.
  //   pixel  side of the object's squares
  struct Difference {
    double ofHalfPlanes, ofUnitArea;
  };
  Difference Beyond(double distance, double pixel) const;

 private:
  double HalfPlaneDifference(double x, double y, double distance) const;

  AffineMap toDisc_;   // of frequencies: to cut-offs of the outline
  AffineMap toRound_;  // of directions: to units in which the outline is the unit disc
  double perArea_;     // of the density, by that map
  double shrinking_;   // the smallest length of a unit after that map
  double strength_;    // of the rim's light, relative to a round pupil without attenuation
  double total_, width_, narrowest_, curvature_;
  double shiftX_, shiftY_;        // of its middle, in the units of toRound_
  double odd_, even_, farthest_;  // of the rim's slopes, from the middle
  std::array<double, kRimPlaces> slopeX_, slopeY_;
  SlopeRange slopes_;  // of the whole pupil
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_IMAGE_FAR_LIGHT_H
