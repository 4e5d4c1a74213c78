// Collects the parts of a convention that a file, a row or the command line states. Combines two such partial
// conventions, and reports the missing parts; nothing is guessed.
#ifndef ORVANEL_EYE_CONVENTIONS_PARTIAL_CONVENTION_H
#define ORVANEL_EYE_CONVENTIONS_PARTIAL_CONVENTION_H

#include <optional>
#include <string>

#include "base/layers.h"
#include "eye/conventions/convention.h"

namespace orvanel::eye {

struct PartialConvention {
  std::optional<Unit> unit;
  std::optional<Nanometres> wavelength;  // of the unit "waves"
  std::optional<Nanometres> reference;   // the wavelength of light at which the coefficients hold
  std::optional<Normalisation> normalisation;
  std::optional<IndexScheme> scheme;
  std::optional<YAxis> yAxis;
  std::optional<Side> side;
  std::optional<Millimetres> pupil;  // over which the eye was measured
};

// The names of the parts in files and options.
constexpr const char* kUnitKey = "unit";
constexpr const char* kWavelengthKey = "wavelength_nm";
constexpr const char* kReferenceKey = "reference_wavelength_nm";
constexpr const char* kNormalisationKey = "normalisation";
constexpr const char* kOrderKey = "order";
constexpr const char* kYAxisKey = "y_axis";
constexpr const char* kSideKey = "eye";
constexpr const char* kPupilKey = "pupil_diameter_mm";

// All parts of a named convention.
PartialConvention PartsOf(const Convention& convention);

// Reads one part from the text of a file or option. Throws UnknownWord, LengthNotPositive, WavelengthOutOfRange, and
// Error for a text that is not a number. False if the key is not the name of a part.
bool SetPart(PartialConvention& parts, std::string_view key, std::string_view text);

// Combines two partial conventions. Throws ContradictingParts.
//   wider, narrower  their sources, for the message: "the command line", "the table"
PartialConvention Combined(const PartialConvention& a, const std::string& wider, const PartialConvention& b,
                           const std::string& narrower);

// A convention without missing parts.
struct CompleteConvention {
  Convention convention;
  Side side;
  Millimetres pupil;
  std::optional<Nanometres> reference;
};

// Throws IncompleteConvention, and WavelengthWithoutWaves: the unit waves needs a wavelength, and other units must not
// have one. The reference wavelength may be missing; then it is unknown.
//   needsOrder  false if every coefficient comes with its term
CompleteConvention Complete(const PartialConvention& parts, bool needsOrder);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_CONVENTIONS_PARTIAL_CONVENTION_H
