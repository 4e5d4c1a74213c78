// Tests reading bytes from files and pipes.
#include "files/input_file.h"

#include <gtest/gtest.h>

#include <csignal>
#include <thread>

#include "base/error.h"
#include "files/platform.h"
#include "tests/support/temporary_files.h"
#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace orvanel::files {
namespace {

std::string Rest(std::istream& stream) { return {std::istreambuf_iterator<char>(stream), {}}; }

TEST(InputFile, HandsOutAllBytesAndCountsThem) {
  const TemporaryFolder folder;
  std::string text;
  for (int i = 0; text.size() < 200000; ++i) text += std::to_string(i) + "\r\n";
  Write(folder / "t.csv", text);
  InputFile stream((folder / "t.csv").string());
  EXPECT_EQ(stream.bytesRead(), 0U);
  std::string line;
  std::getline(stream, line);
  EXPECT_EQ(line, "0\r");
  EXPECT_LT(stream.bytesRead(), text.size());
  EXPECT_EQ("0\r\n" + Rest(stream), text);
  EXPECT_EQ(stream.bytesRead(), text.size());
}

TEST(InputFile, HashesWhatItHasRead) {
  const TemporaryFolder folder;
  Write(folder / "t.csv", "foobar");
  InputFile stream((folder / "t.csv").string());
  EXPECT_EQ(stream.hash(), "cbf29ce484222325");  // published, of no bytes
  Rest(stream);
  EXPECT_EQ(stream.hash(), "85944171f73967e8");  // published
}

TEST(InputFile, TellsWhyItCannotRead) {
  const TemporaryFolder folder;
  EXPECT_THROW(InputFile(folder.path().string()), Error);
  EXPECT_THROW(InputFile((folder / "nowhere").string()), Error);
}

TEST(InputFile, ALargeFileIsNotReadToItsEnd) {
  const TemporaryFolder folder;
  Write(folder / "large", std::string(1000000, 'x'));
  EXPECT_EQ(ReadBytes((folder / "large").string(), 1000000).size(), 1000000U);
  const std::size_t some = ReadBytes((folder / "large").string(), 1000).size();
  EXPECT_GT(some, 1000U);
  EXPECT_LT(some, 200000U);
}

#ifndef _WIN32
TEST(InputFile, AReadThatFailsIsAnErrorAndNoEnd) {
  const TemporaryFolder folder;
  Write(folder / "t.csv", "text");
  InputFile stream(open((folder / "t.csv").c_str(), O_WRONLY), "t.csv");
  std::string line;
  EXPECT_THROW(std::getline(stream, line), Error);
}

TEST(InputFile, WaitsForTheWriterOfAPipeAndForEachOfItsPieces) {
  const TemporaryFolder folder;
  const std::string pipe = (folder / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  InputFile stream(pipe);
  std::thread writer([&pipe] {
    std::ofstream out(pipe);
    for (int i = 0; i < 3; ++i) {
      out << i << '\n' << std::flush;
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  });
  EXPECT_EQ(Rest(stream), "0\n1\n2\n");
  writer.join();
}

TEST(InputFile, ARequestToStopEndsAWaitThatBeginsLater) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  ASSERT_EQ(write(ends[1], "x", 1), 1);
  // In a process of its own, since the request holds for all that comes later.
  const auto waits = [&ends] {
    PrepareEndWaiting();
    std::signal(SIGTERM, [](int) { EndWaiting(); });
    const bool before = WaitForInput(ends[0]);
    std::raise(SIGTERM);
    std::_Exit(before && !WaitForInput(ends[0]) ? 0 : 1);
  };
  EXPECT_EXIT(waits(), testing::ExitedWithCode(0), "");
}
#endif

}  // namespace
}  // namespace orvanel::files
