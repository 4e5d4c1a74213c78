// The changes one after the other; refraction belongs to the eye as measured.
#include "eye/adjustments.h"

#include <algorithm>

#include "base/error.h"
#include "base/number_text.h"
#include "eye/pupil_rescale.h"
#include "eye/rms.h"

namespace orvanel::eye {
namespace {

bool ChangesPupil(const Eye& eye, const Preparation& preparation) {
  return preparation.pupil && *preparation.pupil != eye.pupil;
}

bool ChangesSide(const Eye& eye, const Preparation& preparation) {
  return preparation.mirror && *preparation.mirror != eye.side;
}

void Check(const Eye& eye, const Preparation& preparation) {
  if (preparation.pupil && *preparation.pupil > eye.pupil && !preparation.extrapolate) {
    throw Error("the pupil of " + ShortestText(preparation.pupil->value()) + " mm is larger than the " +
                ShortestText(eye.pupil.value()) +
                " mm over which the eye was measured; what lies outside is not known. Ask for a smaller one, or let "
                "--extrapolate continue the polynomials");
  }
  if (preparation.mirror && eye.side == Side::kUnknown) {
    throw Error("whether the eye is OD or OS is not known, so that it cannot be brought to " +
                std::string(Word(*preparation.mirror)) + "; state the eye");
  }
}

// Whoever confuses units is told so before infinities are. Also false for what is not a number.
void RequirePlausible(const Eye& eye) {
  constexpr Millimetres kSmallest(1e-3), kLargest(1e3);
  if (!(eye.pupil >= kSmallest && eye.pupil <= kLargest)) {
    throw Error("a pupil of " + ShortestText(eye.pupil.value()) + " mm is no eye's; check its unit");
  }
  constexpr Micrometres kMetre(1e6);
  if (!(Rms(OsaCoefficients(eye), 0) < kMetre)) {
    throw Error("the wavefront would be a metre high and more; check the unit of the coefficients");
  }
}

// The eye with the refraction that is stated beside its coefficients.
Eye WithPrescription(Eye eye) {
  if (!eye.prescription) return eye;
  eye.coefficients =
      Converted(WithRefraction(OsaCoefficients(eye), eye.pupil, *eye.prescription), kOsaConvention, eye.convention);
  eye.prescription.reset();
  return eye;
}

// After a change of pupil, which makes lower orders of higher ones.
Dropped DropOrdersAbove(int highest, Eye& eye) {
  const Coefficients osa = OsaCoefficients(eye);
  const Dropped dropped{highest, Rms(osa, highest + 1), Rms(osa, kLowestOrderThatBlurs)};
  const std::size_t kept = OsaIndex({highest, highest}) + 1;
  if (eye.coefficients.size() > kept) eye.coefficients.resize(kept);
  return dropped;
}

}  // namespace

Coefficients OsaCoefficients(const Eye& eye) { return Converted(eye.coefficients, eye.convention, kOsaConvention); }

Eye Prepared(Eye eye, const Preparation& preparation, std::optional<Dropped>* dropped) {
  Check(eye, preparation);
  eye = WithPrescription(std::move(eye));
  if (preparation.refraction || preparation.lens || ChangesPupil(eye, preparation)) {
    Coefficients osa = OsaCoefficients(eye);
    if (preparation.refraction) osa = WithRefraction(std::move(osa), eye.pupil, *preparation.refraction);
    if (preparation.lens) osa = WithRefraction(std::move(osa), eye.pupil, -ToPowerVector(AtCornea(*preparation.lens)));
    if (ChangesPupil(eye, preparation)) {
      osa = Rescaled(osa, *preparation.pupil / eye.pupil);
      eye.pupil = *preparation.pupil;
    }
    eye.coefficients = Converted(std::move(osa), kOsaConvention, eye.convention);
  }
  if (ChangesSide(eye, preparation)) {
    eye.coefficients = Mirrored(std::move(eye.coefficients));
    eye.side = *preparation.mirror;
  }
  RequirePlausible(eye);
  if (preparation.highestOrder) {
    const Dropped went = DropOrdersAbove(*preparation.highestOrder, eye);
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
  if (dropped.rms > Micrometres(0.0)) ++losers;
  most = std::max(most, dropped.rms);
}

std::string Text(const DroppedOfMany& dropped, int above) {
  return "radial orders above " + std::to_string(above) + " dropped: " + std::to_string(dropped.losers) + " of " +
         std::to_string(dropped.eyes) + " eyes have lost something, at most " + NumberText(dropped.most.value(), 3) +
         " um RMS";
}

std::vector<std::string> Changes(const Eye& measured, const Preparation& preparation) {
  std::vector<std::string> changes;
  if (measured.prescription) {
    changes.push_back("prescription of " + Text(ToRefraction(*measured.prescription, CylinderSign::kMinus)) + " added");
  }
  if (preparation.refraction) {
    changes.push_back("refraction of " + Text(ToRefraction(*preparation.refraction, CylinderSign::kMinus)) + " added");
  }
  if (preparation.lens) {
    const Lens& lens = *preparation.lens;
    std::string change = "lens " + PrescriptionText(lens.power) + " worn at ";
    if (lens.vertex > Millimetres(0.0)) {
      change += ShortestText(lens.vertex.value()) + " mm, which is " + PrescriptionText(AtCornea(lens)) + " at ";
    }
    change += "the cornea";
    changes.push_back(change);
  }
  if (ChangesPupil(measured, preparation)) {
    changes.push_back((*preparation.pupil > measured.pupil ? "extrapolated from " : "rescaled from ") +
                      ShortestText(measured.pupil.value()) + " to " + ShortestText(preparation.pupil->value()) + " mm");
  }
  if (ChangesSide(measured, preparation)) {
    changes.push_back("mirrored from " + std::string(Word(measured.side)) + " to " +
                      std::string(Word(*preparation.mirror)));
  }
  if (preparation.highestOrder) {
    std::optional<Dropped> dropped;
    Prepared(measured, preparation, &dropped);
    changes.push_back(Text(*dropped));
  }
  return changes;
}

}  // namespace orvanel::eye
