// Tests stacks of planes from outside. read_back.py tests their contents.
#include "files/planes/hdf5_stack.h"

#include <gtest/gtest.h>
#include <hdf5.h>

#include <chrono>
#include <cmath>
#include <cstring>
#include <thread>

#include "tests/files/planes/plane_sets.h"
#include "tests/support/temporary_files.h"

namespace orvanel::files {
namespace {

std::string Stack(const std::string& plane) {
  Hdf5Stack stack({{"psf", "point spread function", "1", "retina", ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE}});
  stack.Add({plane});
  stack.Add({});
  stack.Add({plane});
  stack.AddNumbers("row", "number of the row", {1, 2, 3});
  return stack.Finish();
}

TEST(Hdf5Stack, TheSamePlanesGiveTheSameBytesInTheNextSecond) {
  const std::string plane = CompressedPlane(Ramp());
  const std::string first = Stack(plane);
  EXPECT_TRUE(first.starts_with(std::string("\x89HDF\r\n\x1a\n\0", 9)));
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  EXPECT_EQ(Stack(plane), first);
}

TEST(Hdf5Stack, AnEyeWithoutPlanesHasNoNumbers) {
  const TemporaryFolder folder;
  const Plane ramp = Ramp();
  Write(folder / "stack.h5", Stack(CompressedPlane(ramp)));
  const hid_t file = H5Fopen((folder / "stack.h5").c_str(), H5F_ACC_RDONLY, H5P_DEFAULT);
  const hid_t dataset = H5Dopen2(file, "psf", H5P_DEFAULT);
  std::vector<double> samples(3 * ORVANEL_PLANE_SAMPLES);
  ASSERT_EQ(H5Sget_simple_extent_npoints(H5Dget_space(dataset)), static_cast<hssize_t>(samples.size()));
  ASSERT_GE(H5Dread(dataset, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, samples.data()), 0);
  for (std::size_t i = 0; i < ORVANEL_PLANE_SAMPLES; ++i) {
    EXPECT_TRUE(std::isnan(samples[ORVANEL_PLANE_SAMPLES + i]));
  }
  for (const std::size_t eye : {std::size_t{0}, std::size_t{2}}) {
    EXPECT_EQ(std::memcmp(&samples[eye * ORVANEL_PLANE_SAMPLES], ramp.data(), sizeof(double) * ramp.size()), 0);
  }
  H5Dclose(dataset);
  H5Fclose(file);
}

}  // namespace
}  // namespace orvanel::files
