// Tests that the shipped eyes can be read without warnings.
#include <gtest/gtest.h>

#include "files/eyes/eye_file.h"
#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::files {
namespace {

TEST(ShippedEyes, AreNotDoubted) {
  for (const char* name : {"/standard_observer_6mm.json", "/watson_2015_example_6mm.json", "/perfect_3mm.json"}) {
    const Eye eye = ReadEyeFile(ORVANEL_EYES + std::string(name));
    EXPECT_TRUE(Simulated(eye, {{0.4, Gap::kUp}}).warnings.empty()) << name;
  }
}

}  // namespace
}  // namespace orvanel::files
