// Computes planes of the classic model, to the bit of the eight functions.
#include <cmath>
#include <memory>
#include <utility>

#include "c_interface/arguments.h"
#include "c_interface/handles.h"
#include "c_interface/plane_facts.h"
#include "evaluation/evaluator.h"
#include "models/errors.h"
#include "targets/sector_star.h"

namespace orvanel::c_interface {
namespace {

using evaluation::Evaluator;
using models::ImageKind;
using models::Need;

constexpr models::Needs kAll = {Need::kUndersampled, Need::kWavefront,  Need::kWavefrontRange,
                                Need::kStrehl,       Need::kStrehlPeak, Need::kPsf,
                                Need::kMtf,          Need::kImages};

std::unique_ptr<orvanel_plane> ImageOf(targets::Plane samples, const models::Results& results, int32_t kind) {
  auto plane = PlaneOf(kind, std::move(samples));
  SetAxes(*plane, results.retinaAxis.step.value(), results.retinaAxis.centre, "arcmin");
  plane->facts.half_width_mm = results.scales.library.halfWidth.value();
  if (kind == ORVANEL_IMAGE) plane->facts.view = ORVANEL_PATIENT;
  return plane;
}

std::unique_ptr<orvanel_plane> RingOf(Evaluator& evaluator, double acuity, int32_t gap, bool seen) {
  RequireChoice(gap, static_cast<int>(targets::Gap::kLeft), "gap");
  if (!(acuity > 0.0 && std::isfinite(acuity))) {
    throw ArgumentError("invalid_argument", "acuity is not a number above 0", {{"argument", std::string("acuity")}});
  }
  models::Ring ring = evaluator.SeeRing({acuity, static_cast<targets::Gap>(gap)});
  auto plane =
      ImageOf(std::move(seen ? ring.seen : ring.original), evaluator.results(), seen ? ORVANEL_IMAGE : ORVANEL_OBJECT);
  plane->facts.effective_acuity = ring.effectiveAcuity;
  return plane;
}

std::unique_ptr<orvanel_plane> Classic(const eye::Eye& eye, int32_t what, double acuity, int32_t gap) {
  Evaluator evaluator({models::ModelKind::kClassic, {}});
  const models::Results& results = evaluator.Evaluate(eye, kAll);
  if (!std::isfinite(results.strehl) || !std::isfinite(results.mtf[0])) throw models::PupilOutOfRange(results.pupil);
  switch (what) {
    case ORVANEL_CLASSIC_PSF:
      return PsfOf(results);
    case ORVANEL_CLASSIC_MTF:
      return MtfOf(results);
    case ORVANEL_CLASSIC_WAVEFRONT:
      return WavefrontOf(results);
    case ORVANEL_CLASSIC_STAR:
      return ImageOf(targets::SectorStar(), results, ORVANEL_OBJECT);
    case ORVANEL_CLASSIC_STAR_STRETCHED:
      return ImageOf(evaluator.ImageOf(targets::SectorStar(), ImageKind::kStretched), results, ORVANEL_IMAGE);
    case ORVANEL_CLASSIC_STAR_TOTAL_LIGHT:
      return ImageOf(evaluator.ImageOf(targets::SectorStar(), ImageKind::kTotalLight), results, ORVANEL_IMAGE);
    default:
      return RingOf(evaluator, acuity, gap, what == ORVANEL_CLASSIC_RING_IMAGE);
  }
}

}  // namespace
}  // namespace orvanel::c_interface

using namespace orvanel::c_interface;  // NOLINT(google-build-using-namespace): the functions of C have no namespace

orvanel_status orvanel_classic(const orvanel_eye* eye, int32_t what, double acuity, int32_t gap,
                               orvanel_plane** plane) noexcept {
  return Call(
      [&] {
        RequirePointer(eye, "eye");
        RequirePointer(plane, "plane");
        RequireChoice(what, ORVANEL_CLASSIC_RING_IMAGE, "what");
        *plane = Classic(eye->eye, what, acuity, gap).release();
      },
      ORVANEL_REFUSED);
}
