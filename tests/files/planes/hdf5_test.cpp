// Tests HDF5 files from outside. read_back.py tests their contents.
#include "files/planes/hdf5.h"

#include <gtest/gtest.h>
#include <hdf5.h>

#include <chrono>
#include <thread>

#include "files/planes/hdf5_handle.h"
#include "tests/files/planes/plane_sets.h"
#include "tests/support/temporary_files.h"

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

TEST(Hdf5, AWidePlaneKeepsItsRows) {
  const TemporaryFolder folder;
  const Plane samples(3, 2, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0});
  Write(folder / "planes.h5", EncodeHdf5(SetOfOne(samples)));
  const Handle file(H5Fopen((folder / "planes.h5").c_str(), H5F_ACC_RDONLY, H5P_DEFAULT), H5Fclose);
  const Handle dataset(H5Dopen2(file, "ramp-0.5", H5P_DEFAULT), H5Dclose);
  const Handle space(H5Dget_space(dataset), H5Sclose);
  hsize_t shape[2] = {};
  ASSERT_EQ(H5Sget_simple_extent_dims(space, shape, nullptr), 2);
  EXPECT_EQ(shape[0], 2U);
  EXPECT_EQ(shape[1], 3U);
  Plane read(3, 2);
  ASSERT_GE(H5Dread(dataset, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, read.data()), 0);
  EXPECT_EQ(read, samples);
}

}  // namespace
}  // namespace orvanel::files
