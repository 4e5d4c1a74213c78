// Describes the view of a plane: its orientation, and its nasal and temporal sides.
#ifndef ORVANEL_EYE_VIEW_H
#define ORVANEL_EYE_VIEW_H

#include <string>
#include <string_view>
#include <utility>

#include "base/layers.h"
#include "eye/conventions/convention.h"

namespace orvanel::eye {

// Row 0 is at the top in all views. The view of the patient is that of the retina, mirrored top to bottom.
enum class View {
  kPupil,    // the pupil as the examiner sees it
  kRetina,   // the retina as the examiner sees it through the pupil: PSF and MTF
  kPatient,  // the visual field of the patient: objects and their retinal images
};

// "pupil", "retina", "patient".
std::string_view Word(View view);

// The caption below a panel: "view: retina, as the examiner sees it".
std::string_view Caption(View view);

// The same with the directions of the axes.
std::string_view Description(View view);

// "left" or "right"; empty if the laterality is unknown. For the patient it is the nasal side of the visual field.
std::string_view NasalSide(View view, Side side);

// The labels at the left and right of a panel: "nasal" and "temporal", or for the patient "nasal field" and "temporal
// field". Empty if the laterality is unknown.
std::pair<std::string, std::string> SideWords(View view, Side side);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_VIEW_H
