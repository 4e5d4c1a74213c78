// The capture of the library's trace line.
#include "cli/trace_capture.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "cli/error.h"
#include "tests/support/captured_stdout.h"

namespace orvanel::cli {
namespace {

using test::OutputOf;

TEST(TraceCapture, TakesWhatIsWrittenMeanwhileAndNothingElse) {
  std::string captured;
  const std::string written = OutputOf([&captured] {
    std::fputs("before ", stdout);  // still in the buffer when the capture begins
    {
      TraceCapture capture;
      std::fputs("0.63\t95\n", stdout);
      captured = capture.Finish();
      std::fputs("after ", stdout);
    }
    std::fputs("and later", stdout);
  });
  EXPECT_EQ(captured, "0.63\t95\n");
  EXPECT_EQ(written, "before after and later");
}

TEST(TraceCapture, GivesStandardOutputBackWhenItIsNotFinished) {
  EXPECT_EQ(OutputOf([] {
              {
                TraceCapture capture;
                std::fputs("lost", stdout);
              }
              std::fputs("kept", stdout);
            }),
            "kept");
}

TEST(TraceCapture, LeavesNoDescriptorOpen) {
  const int before = test::Duplicate(1);
  test::Close(before);
  for (int i = 0; i < 3; ++i) TraceCapture().Finish();
  { TraceCapture unfinished; }
  const int after = test::Duplicate(1);
  test::Close(after);
  EXPECT_EQ(after, before);
}

TEST(TraceCapture, DiameterStandsBehindTheTab) {
  EXPECT_EQ(DiameterOfTrace("0.63\t95\n"), 95);
  EXPECT_EQ(DiameterOfTrace("1e+06\t0\n"), 0);
}

TEST(TraceCapture, AnyOtherTextIsRefused) {
  for (const char* text : {"", "95\n", "0.63\t\n", "0.63\t95", "0.63\t95\n0.7\t80\n", "0.63\tninety\n"}) {
    EXPECT_THROW(DiameterOfTrace(text), Error) << text;
  }
}

}  // namespace
}  // namespace orvanel::cli
