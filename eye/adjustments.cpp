// Applies the adjustments one after the other. Refraction is added over the measured pupil.
#include "eye/adjustments.h"

#include <algorithm>

#include "base/number_text.h"
#include "eye/errors.h"
#include "eye/pupil_rescale.h"
#include "eye/rms.h"

namespace orvanel::eye {
namespace {

bool ChangesPupil(const Eye& eye, const Adjustments& adjustments) {
  return adjustments.pupil && *adjustments.pupil != eye.pupil;
}

bool ChangesSide(const Eye& eye, const Adjustments& adjustments) {
  return adjustments.mirror && *adjustments.mirror != eye.side;
}

void Check(const Eye& eye, const Adjustments& adjustments) {
  if (adjustments.pupil && *adjustments.pupil > eye.pupil && !adjustments.extrapolate) {
    throw PupilLargerThanMeasured(*adjustments.pupil, eye.pupil);
  }
  if (adjustments.mirror && eye.side == Side::kUnknown) {
    throw LateralityUnknown(*adjustments.mirror);
  }
}

// Refuses NaN, and values that only a wrong unit explains, before they become infinite.
void RequirePlausible(const Eye& eye) {
  constexpr Millimetres kSmallest(1e-3), kLargest(1e3);
  if (!(eye.pupil >= kSmallest && eye.pupil <= kLargest)) throw ImplausiblePupil(eye.pupil);
  constexpr Micrometres kMetre(1e6);
  const Micrometres rms = Rms(eye.coefficients.osa(), 0);
  if (!(rms < kMetre)) throw ImplausibleWavefront(rms);
}

// Applied after a change of pupil, which turns higher orders into lower ones.
Dropped DropOrdersAbove(int highest, Eye& eye) {
  const Coefficients& osa = eye.coefficients.osa();
  const Dropped dropped{highest, Rms(osa, highest + 1), Rms(osa, kLowestOrderThatBlurs)};
  eye.coefficients.DropFrom(OsaIndex({highest, highest}) + 1);
  return dropped;
}

}  // namespace

Eye Adjusted(Eye eye, const Adjustments& adjustments, std::optional<Dropped>* dropped) {
  Check(eye, adjustments);
  if (eye.prescription || adjustments.refraction || adjustments.lens || ChangesPupil(eye, adjustments)) {
    Coefficients osa = eye.coefficients.osa();
    const auto add = [&osa, &eye](const PowerVector& powers) {
      osa = WithRefraction(std::move(osa), eye.pupil, powers);
    };
    if (eye.prescription) add(*eye.prescription);
    if (adjustments.refraction) add(*adjustments.refraction);
    if (adjustments.lens) add(-ToPowerVector(AtCornea(*adjustments.lens)));
    if (ChangesPupil(eye, adjustments)) {
      osa = Rescaled(osa, *adjustments.pupil / eye.pupil);
      eye.pupil = *adjustments.pupil;
    }
    eye.prescription.reset();
    eye.coefficients.Replace(std::move(osa));
  }
  if (ChangesSide(eye, adjustments)) {
    eye.coefficients.Mirror();
    eye.side = *adjustments.mirror;
  }
  RequirePlausible(eye);
  if (adjustments.highestOrder) {
    const Dropped went = DropOrdersAbove(*adjustments.highestOrder, eye);
    if (dropped != nullptr) *dropped = went;
  }
  return eye;
}

double Share(const Dropped& dropped) { return dropped.total > Micrometres(0.0) ? dropped.rms / dropped.total : 0.0; }

std::string Text(const Dropped& dropped) {
  constexpr int kDigits = 3;
  return "radial orders above " + std::to_string(dropped.above) + " dropped, " +
         NumberText(dropped.rms.value(), kDigits) + " um RMS of " + NumberText(dropped.total.value(), kDigits) +
         " um (" + FixedText(100.0 * Share(dropped), 1) + " %)";
}

void DroppedOfMany::Add(const Dropped& dropped) {
  ++eyes;
  if (dropped.rms > Micrometres(0.0)) ++affected;
  most = std::max(most, dropped.rms);
}

std::string Text(const DroppedOfMany& dropped, int above) {
  return "radial orders above " + std::to_string(above) + " dropped: " + std::to_string(dropped.affected) + " of " +
         std::to_string(dropped.eyes) + " eyes had such terms, at most " + NumberText(dropped.most.value(), 3) +
         " um RMS";
}

std::vector<std::string> Changes(const Eye& measured, const Adjustments& adjustments) {
  std::vector<std::string> changes;
  if (measured.prescription) {
    changes.push_back("prescription of " + Text(ToRefraction(*measured.prescription, CylinderSign::kMinus)) + " added");
  }
  if (adjustments.refraction) {
    changes.push_back("refraction of " + Text(ToRefraction(*adjustments.refraction, CylinderSign::kMinus)) + " added");
  }
  if (adjustments.lens) {
    const Lens& lens = *adjustments.lens;
    std::string change = "lens " + PrescriptionText(lens.power) + " worn at ";
    if (lens.vertex > Millimetres(0.0)) {
      change += ShortestText(lens.vertex.value()) + " mm, which is " + PrescriptionText(AtCornea(lens)) + " at ";
    }
    change += "the cornea";
    changes.push_back(change);
  }
  if (ChangesPupil(measured, adjustments)) {
    changes.push_back((*adjustments.pupil > measured.pupil ? "extrapolated from " : "rescaled from ") +
                      ShortestText(measured.pupil.value()) + " to " + ShortestText(adjustments.pupil->value()) + " mm");
  }
  if (ChangesSide(measured, adjustments)) {
    changes.push_back("mirrored from " + std::string(Word(measured.side)) + " to " +
                      std::string(Word(*adjustments.mirror)));
  }
  if (adjustments.highestOrder) {
    std::optional<Dropped> dropped;
    Adjusted(measured, adjustments, &dropped);
    changes.push_back(Text(*dropped));
  }
  return changes;
}

}  // namespace orvanel::eye
