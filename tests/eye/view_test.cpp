// Tests the nasal and temporal sides of the views.
#include "eye/view.h"

#include <gtest/gtest.h>

namespace orvanel::eye {
namespace {

using Words = std::pair<std::string, std::string>;

TEST(View, TheExaminerHasTheNoseToTheRightOfTheRightEye) {
  for (const View view : {View::kPupil, View::kRetina}) {
    EXPECT_EQ(NasalSide(view, Side::kOd), "right");
    EXPECT_EQ(NasalSide(view, Side::kOs), "left");
    EXPECT_EQ(SideWords(view, Side::kOd), (Words{"temporal", "nasal"}));
    EXPECT_EQ(SideWords(view, Side::kOs), (Words{"nasal", "temporal"}));
  }
}

// The nasal retina sees the temporal field, and both views have x to the same side.
TEST(View, ThePatientHasTheTemporalFieldOfTheRightEyeToTheRight) {
  EXPECT_EQ(NasalSide(View::kPatient, Side::kOd), "left");
  EXPECT_EQ(NasalSide(View::kPatient, Side::kOs), "right");
  EXPECT_EQ(SideWords(View::kPatient, Side::kOd), (Words{"nasal field", "temporal field"}));
  EXPECT_EQ(SideWords(View::kPatient, Side::kOs), (Words{"temporal field", "nasal field"}));
}

TEST(View, NothingIsMarkedWhereTheSideIsNotKnown) {
  for (const View view : {View::kPupil, View::kRetina, View::kPatient}) {
    EXPECT_EQ(NasalSide(view, Side::kUnknown), "");
    EXPECT_EQ(SideWords(view, Side::kUnknown), Words());
  }
}

TEST(View, EveryTextNamesTheView) {
  for (const View view : {View::kPupil, View::kRetina, View::kPatient}) {
    const std::string word(Word(view));
    EXPECT_TRUE(Caption(view).starts_with("view: " + word));
    EXPECT_TRUE(Description(view).starts_with(word));
  }
}

}  // namespace
}  // namespace orvanel::eye
