// Tests that the program adds its options to errors, and that errors of the layers do not name options.
#include "cli/error_text.h"

#include <gtest/gtest.h>

#include "evaluation/errors.h"
#include "eye/errors.h"
#include "files/errors.h"
#include "metrics/errors.h"

namespace orvanel::cli {
namespace {

TEST(ErrorText, NamesTheOptionThatHelps) {
  EXPECT_EQ(TextOf(PupilLargerThanMeasured(Millimetres(6.5), Millimetres(6.0))),
            "the pupil of 6.5 mm is larger than the 6 mm over which the eye was measured; the wavefront outside is not "
            "known. Use a smaller one, or let --extrapolate continue the polynomials");
  EXPECT_EQ(TextOf(OrderAboveHighest({8, 0}, 0.01, "um", 6, "classic")),
            "the term Z(8,0), tertiary spherical aberration, is 0.01 um, but the classic model accepts radial orders 0 "
            "to 6; let --highest-order 6 drop what is above");
  EXPECT_EQ(TextOf(MetricOfPhysicalModel("VSX")), "the classic model has no metric 'VSX'; remove --model classic");
  EXPECT_EQ(TextOf(TooFewThreads(3)), "this system allows the program at most 3 threads; request fewer with --jobs");
}

TEST(ErrorText, NamesTheOptionAtAPlaceInATable) {
  const ErrorAt error(
      "eyes.csv", {3, 14}, "column 'Z4': ",
      std::make_shared<FileError>(FileFix::kReadDecimalCommas, "'0,1' has a decimal comma; ", "write it with a point"));
  EXPECT_EQ(TextOf(error),
            "eyes.csv: line 3, column 14: column 'Z4': '0,1' has a decimal comma; add --decimal-comma, or write it "
            "with a point");
  EXPECT_EQ(ReasonOf(error), "column 'Z4': '0,1' has a decimal comma; add --decimal-comma, or write it with a point");
  EXPECT_STREQ(error.what(),
               "eyes.csv: line 3, column 14: column 'Z4': '0,1' has a decimal comma; write it with a point");
  EXPECT_EQ(ReasonOf(ErrorAt("eyes.csv", {3, 14}, "is empty")), "is empty");
}

TEST(ErrorText, OtherErrorsKeepTheirSentence) { EXPECT_EQ(TextOf(Error("is empty")), "is empty"); }

TEST(ErrorText, TheLayersNameNoOption) {
  EXPECT_STREQ(PupilLargerThanMeasured(Millimetres(6.5), Millimetres(6.0)).what(),
               "the pupil of 6.5 mm is larger than the 6 mm over which the eye was measured; the wavefront outside is "
               "not known. Use a smaller one, or allow extrapolation");
  EXPECT_STREQ(TooFewThreads(3).what(), "this system allows the program at most 3 threads; request fewer");
}

}  // namespace
}  // namespace orvanel::cli
