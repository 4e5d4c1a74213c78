// The pupil through which light enters: its outline, its transmission, and the phase of the wavefront in it.
#ifndef ORVANEL_MODELS_PHYSICAL_PUPIL_PUPIL_H
#define ORVANEL_MODELS_PHYSICAL_PUPIL_PUPIL_H

#include <array>

#include "models/physical/pupil/wavefront_polynomial.h"

namespace orvanel::physical {

// An ellipse in the pupil plane, in units of the radius over which the wavefront is given; x to the examiner's right,
// y up. The default is that whole pupil.
struct Ellipse {
  double semiAxisA = 1.0;  // in the direction of `angle`
  double semiAxisB = 1.0;  // across it
  double angle = 0.0;      // radians, counter-clockwise from +x
  double centreX = 0.0;
  double centreY = 0.0;
  bool operator==(const Ellipse&) const = default;
};

// The Stiles-Crawford effect: intensity 10^(-rho d^2) at the distance d from its centre, so that the amplitude is
// 10^(-rho d^2 / 2). Source: Stiles and Crawford (1933); Applegate and Lakshminarayanan (1993) for rho = 0.05.
struct StilesCrawford {
  double rho = 0.0;  // per mm^2; 0 for none
  double centreXmm = 0.0;
  double centreYmm = 0.0;
  bool operator==(const StilesCrawford&) const = default;
};

// What the Fourier integral needs to know of an eye and one wavelength.
struct Pupil {
  double radiusMm = 0.0;                 // over which the wavefront is given
  double wavelengthUm = 0.0;             // of the light
  std::array<double, kModes> modesUm{};  // by OSA/ANSI index, orthonormal
  Polynomial wavefrontUm;  // over the unit disc, positive where the wavefront that leaves the eye is ahead
  Ellipse outline;
  StilesCrawford stilesCrawford;
};

// An outline by its horizontal chords. That number v, -1 <= v <= 1, is HeightAt(v) high and has its middle at
// MiddleAt(v) and the half length halfWidth sqrt(1 - v^2).
struct Chords {
  double centreX, centreY, halfWidth, halfHeight, shear;
  double HeightAt(double v) const { return centreY + halfHeight * v; }
  double MiddleAt(double v) const { return centreX + shear * halfHeight * v; }
};
Chords ChordsOf(const Ellipse& outline);

// The logarithm of the amplitude at the place (x, y): perSquare times its squared distance from a centre, in radii.
struct Attenuation {
  double perSquare, x, y;  // perSquare is 0 without attenuation
  // By powers of the distance u along the line of a height: at (middle + u, height).
  std::array<double, 3> AlongLine(double middle, double height) const;
};
Attenuation AttenuationOf(const Pupil& pupil);

// The mean transmission at the rim: of the intensity.
double RimTransmission(const Pupil& pupil);

// From the unit disc to the outline.
AffineMap MapOf(const Ellipse& outline);

// The directions to which rays from all places of the pupil go, in wavelength / diameter, sampled; not a number where
// the wavefront is none.
struct SlopeRange {
  double lowX, highX, lowY, highY;
};
SlopeRange SlopesOf(const Pupil& pupil);

// The same pupil without aberration.
Pupil Flat(Pupil pupil);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_PUPIL_PUPIL_H
