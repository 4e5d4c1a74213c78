// Computes how an eye sees letters: lines of several sizes, and one letter through focus.
#ifndef ORVANEL_EVALUATION_LETTERS_H
#define ORVANEL_EVALUATION_LETTERS_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/layers.h"
#include "base/units.h"
#include "models/adapters/sized_image.h"

namespace orvanel::evaluation {

// Five Sloan letters, an ETDRS line, black on white; a margin of one letter surrounds them.
struct LetterLine {
  double logMar = 0.0;
  SizedImage image;
};

// One letter, with a lens before the eye.
struct FocusStep {
  double lensDioptres = 0.0;
  SizedImage image;
};

// What a strip of one letter through focus shows.
struct StripRequest {
  std::string letter = "R";  // of Sloan's ten
  double logMar = 0.3;
  std::vector<double> lenses;  // dioptres
};

struct FocusStrip {
  StripRequest request;
  std::vector<FocusStep> steps;  // of the lenses
};

struct LetterViews {
  std::vector<LetterLine> lines;        // of kLetterSizes
  std::vector<FocusStep> throughFocus;  // of kFocusLenses
};

constexpr double kLetterSizes[] = {0.4, 0.3, 0.1, 0.0, -0.1};  // logMAR
constexpr const char* kFocusLetter = "R";
constexpr double kFocusLogMar = 0.3;
constexpr double kFocusLenses[] = {-1.0, -0.75, -0.5, -0.25, 0.0, 0.25, 0.5, 0.75, 1.0};  // dioptres

// Empty if the blur is too wide for the limits of ImageFilter. Throws PhysicalRefusal for other reasons.
std::optional<LetterViews> SeeLetters(const Eye& eye, const PhysicalSettings& settings);

// Throws PhysicalRefusal.
//   afterImage  called after each image; it may throw
FocusStrip SeeStrip(const Eye& eye, const PhysicalSettings& settings, const StripRequest& request,
                    const std::function<void()>& afterImage = {});

// The eye behind a lens of so many dioptres at the pupil.
Eye BehindLens(Eye eye, double dioptres);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_LETTERS_H
