// Tests choosing and refusing kernels.
#include "optics/kernels/dispatch.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <new>
#include <set>
#include <stdexcept>
#include <string>

#include "orvanel/optics_engine.h"

namespace orvanel {
namespace {

TEST(KernelDispatch, OffersThePlainestFirst) {
  ASSERT_FALSE(RunnableKernels().empty());
  EXPECT_STREQ(RunnableKernels().front()->name, "baseline");
}

TEST(KernelDispatch, OffersWhatTheCpuHas) {
  std::set<std::string> names;
  for (const Kernels* kernels : RunnableKernels()) names.insert(kernels->name);
  std::set<std::string> expected = {"baseline"};
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx2")) expected.insert("avx2");
  if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl")) {
    expected.insert("avx512");
  }
#endif
  EXPECT_EQ(names, expected);
}

TEST(KernelDispatch, FindsEachByItsNameAndTheWidestWithoutOne) {
  for (const Kernels* kernels : RunnableKernels()) EXPECT_EQ(FindKernels(kernels->name), kernels);
  EXPECT_EQ(FindKernels(nullptr), RunnableKernels().back());
  EXPECT_EQ(FindKernels(""), RunnableKernels().back());
}

TEST(KernelDispatch, FindsNothingElse) {
  for (const char* name : {" ", "sse9", "AVX2", "avx2 ", "baselin"}) EXPECT_EQ(FindKernels(name), nullptr) << name;
}

TEST(KernelDispatch, SaysWhatThereIsInstead) {
  const std::string text = NoSuchKernels("sse9").data();
  EXPECT_EQ(text.find("ORVANEL_KERNELS is 'sse9'; this CPU runs baseline"), 0U) << text;
  for (const Kernels* kernels : RunnableKernels()) EXPECT_NE(text.find(kernels->name), std::string::npos);
}

TEST(KernelDispatch, SaysSoInOneLineWhateverTheNameIs) {
  const std::string text = NoSuchKernels((std::string("a\n\033[2J") + std::string(100000, 'x')).c_str()).data();
  EXPECT_EQ(text.find("ORVANEL_KERNELS is 'a??[2Jxxx"), 0U) << text;
  EXPECT_NE(text.find("x'; this CPU runs baseline"), std::string::npos) << text;
  EXPECT_EQ(text.back(), '.') << text;
}

TEST(KernelDispatch, TellsTheNameOfThoseInUse) {
  const Kernels& before = *ActiveKernels();
  for (const Kernels* kernels : RunnableKernels()) {
    UseKernels(*kernels);
    EXPECT_EQ(ActiveKernels(), kernels);
    EXPECT_STREQ(KernelVariant(), kernels->name);
  }
  UseKernels(before);
}

// In a process of its own, which an emulator could not start and where Windows has another way to set the variable.
#if defined(__x86_64__) && !defined(_WIN32)
class KernelChoice : public testing::Test {
 protected:
  KernelChoice() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

  // ^name$
  static std::string Exactly(const Kernels& kernels) { return std::string("^").append(kernels.name).append("$"); }

  static void PrintVariantAndEnd() {
    std::fputs(KernelVariant(), stderr);
    std::exit(0);
  }
};

TEST_F(KernelChoice, IsThatOfTheEnvironment) {
  for (const Kernels* kernels : RunnableKernels()) {
    setenv("ORVANEL_KERNELS", kernels->name, 1);
    EXPECT_EXIT(PrintVariantAndEnd(), testing::ExitedWithCode(0), Exactly(*kernels));
  }
  unsetenv("ORVANEL_KERNELS");
  EXPECT_EXIT(PrintVariantAndEnd(), testing::ExitedWithCode(0), Exactly(*RunnableKernels().back()));
}

TEST_F(KernelChoice, IsTheWidestWhereTheVariableIsEmpty) {
  setenv("ORVANEL_KERNELS", "", 1);
  EXPECT_EXIT(PrintVariantAndEnd(), testing::ExitedWithCode(0), Exactly(*RunnableKernels().back()));
  unsetenv("ORVANEL_KERNELS");
}

// What becomes of engines, and of the other grids, which have no kernels to choose.
void RefuseAndEnd() {
  EXPECT_THROW(OpticsEngine(), std::runtime_error);
  try {
    KernelVariant();
  } catch (const std::runtime_error& error) {
    if (testing::Test::HasFailure() || OpticsEngine::Make(std::nothrow).has_value() ||
        !OpticsEngine::Make(std::nothrow, 64).has_value())
      return;
    std::fputs(error.what(), stderr);
    std::exit(0);
  }
}

TEST_F(KernelChoice, OfAnUnknownNameMakesNoEngine) {
  setenv("ORVANEL_KERNELS", "sse9", 1);
  EXPECT_EXIT(RefuseAndEnd(), testing::ExitedWithCode(0), "^ORVANEL_KERNELS is 'sse9'; this CPU runs baseline");
  unsetenv("ORVANEL_KERNELS");
}
#endif

}  // namespace
}  // namespace orvanel
