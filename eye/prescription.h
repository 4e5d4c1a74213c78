// Prescriptions as the clinic writes them, and the distance at which spectacles are worn.
//
// The order is sphere, cylinder, axis. Axes are those of trial frames (TABO), from 0 to 180 degrees.
#ifndef ORVANEL_EYE_PRESCRIPTION_H
#define ORVANEL_EYE_PRESCRIPTION_H

#include <string>
#include <string_view>

#include "base/layers.h"
#include "eye/refraction.h"

namespace orvanel::eye {

// A lens and its vertex distance, from its back to the cornea; 0 for a contact lens.
struct Lens {
  Refraction power;
  Millimetres vertex;
};

// The lens at the cornea that does what this one does at its distance: each principal power F becomes F / (1 - d F),
// d in metres, which is the vergence of its light after the distance; the axis stays. Throws Error where a lens has its
// focus at the cornea or before it.
Refraction AtCornea(const Lens& lens);

// "-2.25", "-2.25,-0.75,170", "-2.25/-0.75x170", "-2.25 DS -0.75 DC x 170", "plano/-0.75x20": sphere, cylinder of
// either sign, axis. Throws Error.
Refraction ParseRefraction(std::string_view text);

// The same, with a vertex distance in mm behind it: "-2.25,-0.75,170,12", "-2.25/-0.75x170,12", "-10,12mm". Without a
// distance the lens is at the cornea.
Lens ParseLens(std::string_view text);

// "-2.25 D sphere, -0.75 D cylinder, axis 170".
std::string Text(const Refraction& refraction);

// "-2.25/-0.75x170"; "-2.25 DS" without a cylinder; "plano" without either. ParseRefraction reads it back.
std::string PrescriptionText(const Refraction& refraction);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_PRESCRIPTION_H
