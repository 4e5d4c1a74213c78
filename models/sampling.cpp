// Calls the sampling functions of the library with its grid and wavelength.
#include "models/sampling.h"

#include "models/errors.h"
#include "orvanel/orvanel.h"
#include "orvanel/ring.h"
#include "orvanel/sampling.h"

namespace orvanel::models {
namespace {

RingScale ScaleOf(Millimetres pupil) { return {ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, PsfHalfWidth(pupil).value()}; }

}  // namespace

Millimetres Wavelength() { return Millimetres(kWavelength); }

Millimetres PsfHalfWidth(Millimetres pupil) {
  return Millimetres(orvanel::PsfHalfWidth(PupilSamples(ORVANEL_GRID_SIZE), kWavelength, pupil.value()));
}

CyclesPerDegree FrequencyRange(Millimetres pupil) {
  const double step = FrequencyStep(ORVANEL_GRID_SIZE, PsfHalfWidth(pupil).value());
  return CyclesPerDegree(orvanel::FrequencyRange(ORVANEL_GRID_SIZE, step));
}

int RingDiameter(Millimetres pupil, double acuity) {
  const int diameter = orvanel::RingDiameter(ScaleOf(pupil), acuity);
  if (diameter > 0) return diameter;
  throw RingTooSmall(acuity);
}

double EffectiveAcuity(Millimetres pupil, int diameter) { return orvanel::EffectiveAcuity(ScaleOf(pupil), diameter); }

}  // namespace orvanel::models
