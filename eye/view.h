// From where a plane is looked at, and on which side of it nose and temple are.
#ifndef ORVANEL_EYE_VIEW_H
#define ORVANEL_EYE_VIEW_H

#include <string>
#include <string_view>
#include <utility>

#include "base/layers.h"
#include "eye/conventions/convention.h"

namespace orvanel::eye {

// Row 0 is at the top of all of them. The view of the patient is that of the retina mirrored top to bottom.
enum class View {
  kPupil,    // the pupil as the examiner sees it
  kRetina,   // the retina as the examiner sees it through the pupil: PSF and MTF
  kPatient,  // what the person sees: images and the objects that they are of
};

// "pupil", "retina", "patient".
std::string_view Word(View view);

// What stands below a panel: "view: retina, as the examiner sees it".
std::string_view Caption(View view);

// The same with the directions of the axes.
std::string_view Description(View view);

// "left" or "right"; empty where the side of the eye is not known. For the patient it is that of the visual field.
std::string_view NasalSide(View view, Side side);

// What to write at the left and right of a panel: "nasal" and "temporal", or for the patient "nasal field" and
// "temporal field"; empty where the side of the eye is not known.
std::pair<std::string, std::string> SideWords(View view, Side side);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_VIEW_H
