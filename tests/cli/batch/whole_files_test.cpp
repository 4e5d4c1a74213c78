// Tests files truncated at any byte.
#include "cli/batch/whole_files.h"

#include <gtest/gtest.h>

#include "evaluation/simulation.h"
#include "files/pictures/png.h"
#include "files/planes/hdf5_stack.h"
#include "orvanel/orvanel.h"
#include "tests/support/temporary_files.h"

namespace orvanel::cli {
namespace {

// Every cut of a file of these bytes, and the file itself with a byte more, is not whole.
void ExpectNoneIsWholeBut(const std::string& bytes, bool (*isWhole)(const std::filesystem::path&)) {
  const TemporaryFolder folder;
  const std::filesystem::path file = folder / "file";
  EXPECT_FALSE(isWhole(file));
  Write(file, bytes);
  EXPECT_TRUE(isWhole(file));
  Write(file, bytes + "x");
  EXPECT_FALSE(isWhole(file));
  const std::size_t step = bytes.size() / 200 + 1;
  for (std::size_t cut = 0; cut < bytes.size(); cut += step) {
    Write(file, bytes.substr(0, cut));
    EXPECT_FALSE(isWhole(file)) << cut;
  }
  Write(file, bytes.substr(0, bytes.size() - 1));
  EXPECT_FALSE(isWhole(file));
  EXPECT_FALSE(isWhole(folder.path()));
}

TEST(WholeFiles, APictureIsWholeWithItsEnd) {
  const Plane ramp(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, 0.25);
  ExpectNoneIsWholeBut(EncodePng(GreyPictureOf(ramp), Pixels::kNumbers), IsWholePng);
}

#if ORVANEL_WITH_HDF5
TEST(WholeFiles, AStackOfPlanesIsWholeWithAllItsBytes) {
  Plane plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
  for (std::size_t i = 0; i < plane.size(); ++i) plane[i] = 0.001 * static_cast<double>(i % 77);
  for (const int eyes : {0, 1, 5}) {
    Hdf5Stack stack({{"psf", "point spread function", "1", "retina", ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE}});
    for (int i = 0; i < eyes; ++i) stack.Add({CompressedPlane(plane)});
    stack.AddNumbers("row", "number of the row", std::vector<double>(static_cast<std::size_t>(eyes), 2.0));
    ExpectNoneIsWholeBut(stack.Finish(), IsWholeHdf5);
  }
}
#endif

}  // namespace
}  // namespace orvanel::cli
