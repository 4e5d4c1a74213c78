// Adjusts an eye before it is used: adds refraction, puts on a lens, changes the pupil, mirrors, drops high orders.
#ifndef ORVANEL_EYE_ADJUSTMENTS_H
#define ORVANEL_EYE_ADJUSTMENTS_H

#include <optional>
#include <string>
#include <vector>

#include "base/layers.h"
#include "eye/eye.h"
#include "eye/prescription.h"

namespace orvanel::eye {

struct Adjustments {
  std::optional<PowerVector> refraction;
  std::optional<Lens> lens;
  std::optional<Millimetres> pupil;
  bool extrapolate = false;         // allows a pupil larger than measured
  std::optional<Side> mirror;       // the laterality that is wanted
  std::optional<int> highestOrder;  // radial orders above it are dropped, over the pupil wanted
};

// How much of a wavefront went with the orders that were dropped.
struct Dropped {
  int above = 0;      // the radial order
  Micrometres rms;    // of the orders dropped
  Micrometres total;  // of all orders that blur, before
};

// The adjusted eye; without adjustments, the same bits. Its stated numbers hold no longer where refraction, lens or
// pupil change the wavefront. Throws Error where the pupil is larger than measured without `extrapolate`, where the
// side is to be changed and not known, where the lens has its focus before the cornea, and where pupil or coefficients
// are so far from any eye's that their unit must be wrong.
//   dropped  where it is not null and a highest order is given, gets what went with the orders above
Eye Adjusted(Eye eye, const Adjustments& adjustments, std::optional<Dropped>* dropped = nullptr);

// The share of the RMS that went, from 0 to 1.
double Share(const Dropped& dropped);

// "radial orders above 6 dropped, 0.0531 um RMS of 0.435 um (12.2 %)".
std::string Text(const Dropped& dropped);

// What went with the orders dropped from many eyes.
struct DroppedOfMany {
  std::size_t eyes = 0, losers = 0;  // the latter have lost something
  Micrometres most;                  // RMS

  void Add(const Dropped& dropped);
};

// "radial orders above 6 dropped: 12 of 40 eyes have lost something, at most 0.0531 um RMS".
std::string Text(const DroppedOfMany& dropped, int above);

// What was done, a sentence each: "mirrored from OS to OD".
std::vector<std::string> Changes(const Eye& measured, const Adjustments& adjustments);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_ADJUSTMENTS_H
