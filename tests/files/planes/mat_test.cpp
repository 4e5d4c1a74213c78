// Tests the parts of MAT files that are not compressed. read_back.py tests their contents.
#include "files/planes/mat.h"

#include <gtest/gtest.h>
#include <matio.h>

#include <memory>
#include <vector>

#include "tests/files/planes/plane_sets.h"
#include "tests/support/temporary_files.h"

namespace orvanel::files {
namespace {

TEST(Mat, HeaderIsThatOfVersionFiveWithoutADate) {
  const Plane samples = Ramp();
  const std::string bytes = EncodeMat(SetOfOne(samples));
  const std::string text = "MATLAB 5.0 MAT-file, created by orvanel " ORVANEL_VERSION;
  EXPECT_EQ(bytes.substr(0, 116), text + std::string(115 - text.size(), ' ') + '\0');
  EXPECT_EQ(bytes.substr(124, 4), std::string("\0\x01IM", 4));
}

TEST(Mat, TheSamePlanesGiveTheSameBytes) {
  const Plane samples = Ramp();
  EXPECT_EQ(EncodeMat(SetOfOne(samples)), EncodeMat(SetOfOne(samples)));
}

TEST(Mat, AWidePlaneKeepsItsRows) {
  const TemporaryFolder folder;
  const Plane samples(3, 2, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0});
  Write(folder / "planes.mat", EncodeMat(SetOfOne(samples)));
  const std::unique_ptr<mat_t, int (*)(mat_t*)> file(Mat_Open((folder / "planes.mat").c_str(), MAT_ACC_RDONLY),
                                                     Mat_Close);
  ASSERT_NE(file, nullptr);
  const std::unique_ptr<matvar_t, void (*)(matvar_t*)> plane(Mat_VarRead(file.get(), "ramp_0_5"), Mat_VarFree);
  ASSERT_NE(plane, nullptr);
  EXPECT_EQ(plane->dims[0], 2U);
  EXPECT_EQ(plane->dims[1], 3U);
  const auto* const byColumns = static_cast<const double*>(plane->data);
  EXPECT_EQ(std::vector<double>(byColumns, byColumns + 6), (std::vector<double>{1.0, 4.0, 2.0, 5.0, 3.0, 6.0}));
}

}  // namespace
}  // namespace orvanel::files
