// Words the codes of the physical model.
#include "models/adapters/physical_refusal.h"

#include "base/number_text.h"

namespace orvanel::models {
namespace {

using physical::Problem;
using physical::Refusal;

// "is outside of 0.5 to 12 mm".
std::string Outside(const Refusal& refusal, const std::string& unit) {
  return "is outside of " + ShortestText(refusal.low) + " to " + ShortestText(refusal.high) +
         (unit.empty() ? "" : " " + unit);
}

std::string With(const std::string& what, double value, const std::string& unit) {
  return what + " " + ShortestText(value) + (unit.empty() ? "" : " " + unit) + " ";
}

}  // namespace

std::string TextOf(const Refusal& r) {  // NOLINT(readability-function-size): a table
  const std::string index = std::to_string(r.index);
  switch (r.problem) {
    case Problem::kPupilDiameter:
      return With("the pupil diameter", r.value, "mm") + Outside(r, "mm");
    case Problem::kMode:
      return "the coefficient of OSA/ANSI index " + index + " is no number; write a finite one";
    case Problem::kOutline:
      return "the outline of the pupil is no ellipse inside the measured pupil; its farthest point is " +
             NumberText(r.value, 4) + " radii from the centre";
    case Problem::kStilesCrawford:
      return With("the value", r.value, "") + "of the Stiles-Crawford effect " + Outside(r, "");
    case Problem::kAchromaticAxis:
      return With("the place", r.value, "mm") + "of the achromatic axis " + Outside(r, "mm");
    case Problem::kReferenceWavelength:
      return With("the reference wavelength", r.value, "nm") + Outside(r, "nm");
    case Problem::kNoReferenceWavelength:
      return "light of several wavelengths needs the reference wavelength, at which the coefficients hold";
    case Problem::kNoLight:
      return "the light has no wavelength of a weight above 0";
    case Problem::kWavelength:
      return With("the wavelength", r.value, "nm") + Outside(r, "nm");
    case Problem::kWeight:
      return With("the weight", r.value, "") + "of wavelength " + std::to_string(r.index + 1) +
             " of the light is negative or too large";
    case Problem::kGridSpacing:
      return With("the spacing", r.value, "arc minutes") + "of the PSF is not above 0 and at most " +
             ShortestText(r.high);
    case Problem::kGridSize:
      return With("the side of", r.value, "samples") + Outside(r, "");
    case Problem::kGridCentre:
      return With("the centre of the field,", r.value, "arc minutes,") + Outside(r, "arc minutes");
    case Problem::kFrequency:
      return With("the frequency", r.value, "cycles/degree") + "cannot be computed" +
             (r.low > 0.0 ? "; the finest step is " + ShortestText(r.low) + " cycles/degree" : "");
    case Problem::kPixelSize:
      return With("the pixel of", r.value, "arc minutes") + "is not above 0 and at most " + ShortestText(r.high);
    case Problem::kObjectSize:
      return With("the object's side of", r.value, "pixels") + Outside(r, "");
    case Problem::kMargin:
      return With("the margin of", r.value, "pixels") + Outside(r, "");
    case Problem::kLuminance:
      return r.index < 0 ? "the luminance of the surround is no number, or too large"
                         : "the luminance of pixel " + index + " of the object is no number, or too large";
    case Problem::kFieldTooLarge:
      return "the field needs a lattice of " + ShortestText(r.value) + " samples a side; " + ShortestText(r.high) +
             " are the limit: ask for a smaller field or larger pixels";
    case Problem::kTooSteep:
      return "the wavefront is too steep to be computed within the stated error; check the unit of the coefficients";
    case Problem::kTooManyNodes:
      return "wavefront and field need more than " + ShortestText(r.high) +
             " nodes of quadrature; ask for a smaller field, and check the unit of the coefficients";
    case Problem::kPlace:
      return With("the place", r.value, "arc minutes") + "on the retina " + Outside(r, "arc minutes");
    case Problem::kRadius:
      return With("the radius", r.value, "arc minutes") + "of a circle on the retina " + Outside(r, "arc minutes");
    case Problem::kDirection:
      return "the direction is no number; write a finite angle";
  }
  return "";
}

}  // namespace orvanel::models
