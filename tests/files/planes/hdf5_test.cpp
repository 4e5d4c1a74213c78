// HDF5 files: what shows from outside. read_back.py tests the rest.
#include "files/planes/hdf5.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/files/planes/plane_sets.h"

namespace orvanel::files {
namespace {

TEST(Hdf5, BeginsWithTheSignatureOfTheOldestVersion) {
  const Plane samples = Ramp();
  EXPECT_TRUE(EncodeHdf5(SetOfOne(samples)).starts_with(std::string("\x89HDF\r\n\x1a\n\0", 9)));
}

TEST(Hdf5, TheSamePlanesGiveTheSameBytesInTheNextSecond) {
  const Plane samples = Ramp();
  const std::string first = EncodeHdf5(SetOfOne(samples));
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  EXPECT_EQ(EncodeHdf5(SetOfOne(samples)), first);
}

TEST(Hdf5, TextMayBeOfAnyLength) {
  const Plane samples = Ramp();
  PlaneSet set = SetOfOne(samples);
  set.facts[0].value = std::string(300000, 'n');
  EXPECT_NE(EncodeHdf5(set).find(std::string(300000, 'n')), std::string::npos);
  set.facts[0].value = std::string();
  EXPECT_NO_THROW(EncodeHdf5(set));
}

}  // namespace
}  // namespace orvanel::files
