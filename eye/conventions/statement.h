// What a file, a row or the command line states about how coefficients are meant; two such statements become one, and
// what neither of them says is listed, never guessed.
#ifndef ORVANEL_EYE_CONVENTIONS_STATEMENT_H
#define ORVANEL_EYE_CONVENTIONS_STATEMENT_H

#include <optional>
#include <string>

#include "base/layers.h"
#include "eye/conventions/convention.h"

namespace orvanel::eye {

struct Statement {
  std::optional<Unit> unit;
  std::optional<Nanometres> wavelength;  // of the unit "waves"
  std::optional<Nanometres> reference;   // the wavelength of light at which the coefficients hold
  std::optional<Normalisation> normalisation;
  std::optional<Order> order;
  std::optional<YAxis> yAxis;
  std::optional<Side> side;
  std::optional<Millimetres> pupil;  // over which the eye was measured
};

// The words for each part, as files and options name them.
constexpr const char* kUnitKey = "unit";
constexpr const char* kWavelengthKey = "wavelength_nm";
constexpr const char* kReferenceKey = "reference_wavelength_nm";
constexpr const char* kNormalisationKey = "normalisation";
constexpr const char* kOrderKey = "order";
constexpr const char* kYAxisKey = "y_axis";
constexpr const char* kSideKey = "eye";
constexpr const char* kPupilKey = "pupil_diameter_mm";

// All that a named convention states.
Statement StatementOf(const Convention& convention);

// Takes one part from the text of a file or option. Throws Error with what it may be. False where the key names no
// part.
bool State(Statement& statement, std::string_view key, std::string_view text);

// What either states. Throws Error where they state different things.
//   wider, narrower  who states it, for the message: "the command line", "the table"
Statement Combined(const Statement& a, const std::string& wider, const Statement& b, const std::string& narrower);

// What a complete statement says.
struct StatedConvention {
  Convention convention;
  Side side;
  Millimetres pupil;
  std::optional<Nanometres> reference;
};

// Throws Error with the list of what is missing. A wavelength must be stated with waves, and with nothing else. The
// reference wavelength may be missing: it then stays unknown.
//   needsOrder  false where every coefficient comes with its term
StatedConvention Complete(const Statement& statement, bool needsOrder);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_CONVENTIONS_STATEMENT_H
