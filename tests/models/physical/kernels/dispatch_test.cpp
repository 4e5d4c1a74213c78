// The physical model's kernels go with those of the engine.
#include "models/physical/kernels/dispatch.h"

#include <gtest/gtest.h>

#include "tests/support/every_kernel.h"

namespace orvanel::physical {
namespace {

class ChordKernelTables : public test::EveryKernel {};

TEST_P(ChordKernelTables, AreThoseOfTheEnginesInstructionSet) {
  EXPECT_STREQ(ChordKernelsOf(*GetParam()).name, GetParam()->name);
}

ORVANEL_ON_EVERY_KERNEL(ChordKernelTables);

}  // namespace
}  // namespace orvanel::physical
