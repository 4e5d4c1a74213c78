// The capture of the library's trace line.
#include "cli/trace_capture.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>

#include "cli/error.h"
#include "tests/cli/temporary_folder.h"

namespace orvanel::cli {
namespace {

TEST(TraceCapture, TakesWhatIsWrittenMeanwhileAndNothingElse) {
  const TemporaryFolder folder;
  std::fflush(stdout);
  const int original = dup(1);
  const int file = open((folder / "stdout").c_str(), O_WRONLY | O_CREAT, 0600);
  dup2(file, 1);
  close(file);

  std::fputs("before ", stdout);  // still in the buffer when the capture begins
  std::string captured;
  {
    TraceCapture capture;
    std::fputs("0.63\t95\n", stdout);
    captured = capture.Finish();
    std::fputs("after ", stdout);
  }
  std::fputs("and later", stdout);
  std::fflush(stdout);
  dup2(original, 1);
  close(original);

  EXPECT_EQ(captured, "0.63\t95\n");
  EXPECT_EQ(Read(folder / "stdout"), "before after and later");
}

TEST(TraceCapture, GivesStandardOutputBackWhenItIsNotFinished) {
  const TemporaryFolder folder;
  std::fflush(stdout);
  const int original = dup(1);
  const int file = open((folder / "stdout").c_str(), O_WRONLY | O_CREAT, 0600);
  dup2(file, 1);
  close(file);
  {
    TraceCapture capture;
    std::fputs("lost", stdout);
  }
  std::fputs("kept", stdout);
  std::fflush(stdout);
  dup2(original, 1);
  close(original);
  EXPECT_EQ(Read(folder / "stdout"), "kept");
}

TEST(TraceCapture, LeavesNoDescriptorOpen) {
  const int before = dup(1);
  close(before);
  for (int i = 0; i < 3; ++i) TraceCapture().Finish();
  { TraceCapture unfinished; }
  const int after = dup(1);
  close(after);
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
