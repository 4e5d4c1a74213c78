// Runs tests once for each table of kernels that this CPU supports, with the table in their names.
#ifndef ORVANEL_TESTS_SUPPORT_EVERY_KERNEL_H
#define ORVANEL_TESTS_SUPPORT_EVERY_KERNEL_H

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "optics/kernels/dispatch.h"

namespace orvanel::test {

// Engines made in such a test use the kernels that it is named after.
class EveryKernel : public testing::TestWithParam<const Kernels*> {
 protected:
  EveryKernel() { UseKernels(*GetParam()); }
  ~EveryKernel() override { UseKernels(before_); }

 private:
  const Kernels& before_ = *ActiveKernels();
};

inline std::string NameOfKernels(const testing::TestParamInfo<const Kernels*>& info) { return info.param->name; }

// Whether all samples are the same to the bit, also the signs of zeros.
inline bool SameBits(const double* a, const double* b, std::size_t count) {
  return std::memcmp(a, b, count * sizeof *a) == 0;
}
template <class A, class B>
bool SameBits(const A& a, const B& b) {
  return a.size() == b.size() && SameBits(a.data(), b.data(), a.size());
}

}  // namespace orvanel::test

// Suite is derived from EveryKernel; its tests are then called Suite.Test/avx2.
#define ORVANEL_ON_EVERY_KERNEL(Suite) \
  INSTANTIATE_TEST_SUITE_P(, Suite, testing::ValuesIn(RunnableKernels()), test::NameOfKernels)

#endif  // ORVANEL_TESTS_SUPPORT_EVERY_KERNEL_H
