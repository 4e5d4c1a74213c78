// Reads and writes prescriptions in clinical notation, and converts lenses to their power at the cornea.
//
// The order is sphere, cylinder, axis. Axes are those of trial frames (TABO), from 0 to 180 degrees.
#ifndef ORVANEL_EYE_PRESCRIPTION_H
#define ORVANEL_EYE_PRESCRIPTION_H

#include <string>
#include <string_view>

#include "base/layers.h"
#include "eye/refraction.h"

namespace orvanel::eye {

// A lens and its vertex distance, from its back surface to the cornea; 0 for a contact lens.
struct Lens {
  Refraction power;
  Millimetres vertex;
};

// The effective power at the cornea: each principal power F becomes the vergence F / (1 - d F) after the distance d in
// metres. The axis stays. Throws FocusInFrontOfCornea.
Refraction AtCornea(const Lens& lens);

// "-2.25", "-2.25,-0.75,170", "-2.25/-0.75x170", "-2.25 DS -0.75 DC x 170", "plano/-0.75x20": sphere, cylinder of
// either sign, axis. Throws InvalidPrescription, AxisOutOfRange, and Error for a number of a list that is none.
Refraction ParseRefraction(std::string_view text);

// The same, followed by a vertex distance in mm: "-2.25,-0.75,170,12", "-2.25/-0.75x170,12", "-10,12mm". The
// distance is 0 if it is left out. Throws VertexOutOfRange as well.
Lens ParseLens(std::string_view text);

// 0, or from 1 to 30 mm. Throws VertexOutOfRange.
Millimetres VertexDistance(double mm);

// "-2.25", "+0.50", "0.00".
std::string SignedText(Dioptres power);

// "-2.25 D sphere, -0.75 D cylinder, axis 170".
std::string Text(const Refraction& refraction);

// "-2.25/-0.75x170"; "-2.25 DS" without a cylinder; "plano" without both. ParseRefraction reads it back.
std::string PrescriptionText(const Refraction& refraction);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_PRESCRIPTION_H
