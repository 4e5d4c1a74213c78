// Tests that bytes reach standard output unchanged, in order with the host's output, without changing the host's
// stream.
#include "base/standard_output.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/support/captured_stdout.h"

namespace orvanel {
namespace {

using test::OutputOf;

#ifdef _WIN32
const std::string kHostsLineEnd = "\r\n";
#else
const std::string kHostsLineEnd = "\n";
#endif

TEST(StandardOutput, HasLineEndsOfOneByte) {
  EXPECT_EQ(OutputOf([] { WriteOutput("one\ntwo\n\nthree"); }), "one\ntwo\n\nthree");
}

TEST(StandardOutput, HasEveryByteAsItIs) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  EXPECT_EQ(OutputOf([&] { WriteOutput(bytes); }), bytes);
  bytes.erase(bytes.find('\n'), 1);
  EXPECT_EQ(OutputOf([&] { WriteOutput(bytes); }), bytes);
}

TEST(StandardOutput, KeepsItsOrderWithTheHostAndTheHostsLineEnds) {
  EXPECT_EQ(
      OutputOf([] {
        std::fputs("before\nand ", stdout);
        WriteOutput("0.5\t80\n");
        std::fputs("between\n", stdout);
        WriteOutput("without end");
        std::fputs(" after\n", stdout);
      }),
      "before" + kHostsLineEnd + "and 0.5\t80\n" + "between" + kHostsLineEnd + "without end after" + kHostsLineEnd);
}

#ifdef _WIN32
TEST(StandardOutput, LeavesAStreamThatTheHostMadeBinaryAsItIs) {
  EXPECT_EQ(OutputOf([] {
              std::fputs("text\n", stdout);
              std::fflush(stdout);
              const int mode = _setmode(1, _O_BINARY);
              std::fputs("before\n", stdout);
              WriteOutput("line\n");
              std::fputs("after\n", stdout);
              std::fflush(stdout);
              _setmode(1, mode);
            }),
            "text\r\nbefore\nline\nafter\n");
}
#endif

}  // namespace
}  // namespace orvanel
