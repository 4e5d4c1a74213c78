// Adjusts an eye before its results are computed: refraction, lens, pupil, laterality and radial orders.
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
  std::optional<Side> mirror;       // the laterality of the result
  std::optional<int> highestOrder;  // radial orders above it are dropped, after the change of pupil
};

// The part of a wavefront that was dropped with high radial orders.
struct Dropped {
  int above = 0;      // the highest radial order that is kept
  Micrometres rms;    // of the orders dropped
  Micrometres total;  // of all orders from 2 on, before
};

// Returns the adjusted eye; without adjustments, the same bits. The stated numbers become invalid if refraction, lens
// or pupil change the wavefront. Throws PupilLargerThanMeasured, LateralityUnknown, FocusInFrontOfCornea,
// ImplausiblePupil and ImplausibleWavefront.
//   dropped  if not null and a highest order is given, receives the part that was dropped
Eye Adjusted(Eye eye, const Adjustments& adjustments, std::optional<Dropped>* dropped = nullptr);

// The share of the RMS that was dropped, from 0 to 1.
double Share(const Dropped& dropped);

// "radial orders above 6 dropped, 0.0531 um RMS of 0.435 um (12.2 %)".
std::string Text(const Dropped& dropped);

// Collects the dropped parts of many eyes.
struct DroppedOfMany {
  std::size_t eyes = 0, affected = 0;  // affected: those whose dropped part is not 0
  Micrometres most;                    // largest RMS dropped

  void Add(const Dropped& dropped);
};

// "radial orders above 6 dropped: 12 of 40 eyes had such terms, at most 0.0531 um RMS".
std::string Text(const DroppedOfMany& dropped, int above);

// Describes each change in a phrase: "mirrored from OS to OD".
std::vector<std::string> Changes(const Eye& measured, const Adjustments& adjustments);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_ADJUSTMENTS_H
