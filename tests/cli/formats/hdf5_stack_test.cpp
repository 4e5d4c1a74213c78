// Stacks of planes: what shows from outside. read_back.py tests the rest.
#include "cli/formats/hdf5_stack.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/cli/formats/plane_sets.h"

namespace orvanel::cli {
namespace {

std::string Stack(const std::string& plane) {
  Hdf5Stack stack({{"psf", "point spread function", "1", "retina"}});
  stack.Add({plane});
  stack.Add({});
  stack.Add({plane});
  stack.AddNumbers("row", "number of the row", {1, 2, 3});
  return stack.Finish();
}

TEST(Hdf5Stack, TheSamePlanesGiveTheSameBytesInTheNextSecond) {
  const std::string plane = CompressedPlane(Ramp().data());
  const std::string first = Stack(plane);
  EXPECT_TRUE(first.starts_with(std::string("\x89HDF\r\n\x1a\n\0", 9)));
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  EXPECT_EQ(Stack(plane), first);
}

}  // namespace
}  // namespace orvanel::cli
