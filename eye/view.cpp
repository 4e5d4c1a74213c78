// Words the views, and finds the nasal side. Examiner and patient face each other.
#include "eye/view.h"

namespace orvanel::eye {

std::string_view Word(View view) {
  switch (view) {
    case View::kPupil:
      return "pupil";
    case View::kRetina:
      return "retina";
    case View::kPatient:
      return "patient";
  }
  return "";
}

std::string_view Caption(View view) {
  switch (view) {
    case View::kPupil:
      return "view: pupil, as the examiner sees it";
    case View::kRetina:
      return "view: retina, as the examiner sees it";
    case View::kPatient:
      return "view: patient";
  }
  return "";
}

std::string_view Description(View view) {
  switch (view) {
    case View::kPupil:
      return "pupil, as the examiner sees it: x to the examiner's right, y up; row 0 is at the top";
    case View::kRetina:
      return "retina, as the examiner sees it through the pupil: x to the examiner's right, y up; row 0 is at the top";
    case View::kPatient:
      return "patient: x to the person's right, y up; row 0 is at the top";
  }
  return "";
}

// For the examiner, the nose of the patient is to the right of the right eye. For the patient, it is to the left of
// that eye, as is the nasal half of its visual field.
std::string_view NasalSide(View view, Side side) {
  if (side == Side::kUnknown) return "";
  const bool rightEye = side == Side::kOd, examiner = view != View::kPatient;
  return rightEye == examiner ? "right" : "left";
}

std::pair<std::string, std::string> SideWords(View view, Side side) {
  const std::string_view nasalSide = NasalSide(view, side);
  if (nasalSide.empty()) return {};
  const std::string of = view == View::kPatient ? " field" : "";
  const std::string nasal = "nasal" + of, temporal = "temporal" + of;
  return nasalSide == "left" ? std::pair{nasal, temporal} : std::pair{temporal, nasal};
}

}  // namespace orvanel::eye
