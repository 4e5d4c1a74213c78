// Results have the same bits for every compiler, platform and table of kernels: one hash for each. A change of the
// numerics changes them; the failure shows the new one.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

#include "models/physical/point_spread.h"
#include "models/physical/retinal_image.h"
#include "models/physical/transfer_function.h"
#include "tests/models/physical/examples.h"
#include "tests/support/every_kernel.h"
#include "tests/support/planes.h"

namespace orvanel::physical {
namespace {

// FNV-1a of the doubles' bytes, the lowest first on all platforms that we build for.
class Hash {
 public:
  void Add(std::span<const double> samples) {
    for (const double sample : samples) {
      std::uint64_t bits;
      std::memcpy(&bits, &sample, sizeof bits);
      for (int byte = 0; byte < 8; ++byte) value_ = (value_ ^ (bits >> 8 * byte & 0xff)) * 0x100000001b3;
    }
  }
  void Add(double sample) { Add({&sample, 1}); }
  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0xcbf29ce484222325;
};

Eye AnEye() {
  Eye eye = EyeOf({0, 0.05, -0.1, 0.06, 0.1, -0.04, 0.03, 0.06, -0.05, 0.02, 0.01, 0.02, 0.05, -0.01}, 5.0, 560);
  eye.outline = {0.9, 0.7, 0.6, 0.05, -0.03};
  eye.stilesCrawford = {0.05, 0.3, -0.2};
  return eye;
}
const Light kColours = {{480, 0.3}, {560, 1.0}, {640, 0.5}};

class PhysicalBits : public test::EveryKernel {};

TEST_P(PhysicalBits, OfAPointSpreadAreTheRecordedOnes) {
  Workspace workspace(*ActiveKernels());
  Hash hash;
  hash.Add(PointSpreadOf(AnEye(), kColours, {0.3, -0.2, 0.31, 37, 30}, PsfUnit::kPerArcmin2, workspace)->samples);
  EXPECT_EQ(hash.value(), 0xa0ea7cc0cbafef0u);
}

TEST_P(PhysicalBits, OfStrehlRatiosAreTheRecordedOnes) {
  Workspace workspace(*ActiveKernels());
  const StrehlRatios ratios = *StrehlRatiosOf(AnEye(), kColours, View::kPatient, workspace);
  Hash hash;
  for (const double number : {ratios.axis, ratios.peak, ratios.peakX, ratios.peakY}) hash.Add(number);
  EXPECT_EQ(hash.value(), 0x2b09cb4bb6985410u);
}

TEST_P(PhysicalBits, OfATransferFunctionAreTheRecordedOnes) {
  Workspace workspace(*ActiveKernels());
  const TransferFunction otf = *TransferFunctionOf(AnEye(), kColours, {3.0, 41, View::kRetina}, workspace);
  const std::vector<Frequency> frequencies = {{11.0, -7.0}};
  const std::complex<double> exact =
      (*TransferFunctionAt(AnEye(), kColours, frequencies, View::kPatient, workspace))[0];
  Hash hash;
  hash.Add(otf.re);
  hash.Add(otf.im);
  hash.Add(exact.real());
  hash.Add(exact.imag());
  EXPECT_EQ(hash.value(), 0xd0db0f2ca8ab2be1u);
}

TEST_P(PhysicalBits, OfARetinalImageAreTheRecordedOnes) {
  Workspace workspace(*ActiveKernels());
  const ImageFilter filter = *ImageFilter::Of(AnEye(), kColours, {9, 13, 0.6, 2}, workspace);
  Hash hash;
  hash.Add(filter.ImageOf(reference::Noise(9 * 13, 3).data(), 0.2, View::kPatient, workspace)->luminance);
  EXPECT_EQ(hash.value(), 0x1783f56587507a8bu);
}

ORVANEL_ON_EVERY_KERNEL(PhysicalBits);

}  // namespace
}  // namespace orvanel::physical
