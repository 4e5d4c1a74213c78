// Tests order, bounds, and failures of each of the three functions.
#include "evaluation/in_order.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>

namespace orvanel::evaluation {
namespace {

using Ring = InOrder<int, int>;

std::vector<Ring::Work> Workers(int count, const Ring::Work& work) {
  return std::vector<Ring::Work>(static_cast<std::size_t>(count), work);
}

TEST(InOrder, ResultsComeInTheOrderOfTheTasksWhoeverIsFirst) {
  std::vector<int> results;
  int next = 0;
  Ring(Workers(4,
               [](int& task) {
                 if (task % 5 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(2));
                 return task * task;
               }),
       8)
      .Run(
          [&next](int& task) {
            task = next;
            return next++ < 200;
          },
          [&results](int& result) { results.push_back(result); });
  ASSERT_EQ(results.size(), 200U);
  for (int i = 0; i < 200; ++i) EXPECT_EQ(results[static_cast<std::size_t>(i)], i * i);
}

TEST(InOrder, NeverMoreAreOnTheirWayThanTheRingHolds) {
  int given = 0, taken = 0, most = 0;
  Ring(Workers(3, [](int& task) { return task; }), 6)
      .Run(
          [&](int& task) {
            task = given;
            most = std::max(most, given - taken + 1);
            return given++ < 100;
          },
          [&](int&) { ++taken; });
  EXPECT_EQ(taken, 100);
  EXPECT_LE(most, 6);
}

TEST(InOrder, AFailureOfTheWorkComesWhenItsTurnIs) {
  int next = 0, taken = 0;
  Ring ring(Workers(2,
                    [](int& task) {
                      if (task == 7) throw std::runtime_error("seven");
                      return task;
                    }),
            4);
  EXPECT_THROW(ring.Run(
                   [&next](int& task) {
                     task = next++;
                     return true;
                   },
                   [&taken](int&) { ++taken; }),
               std::runtime_error);
  EXPECT_EQ(taken, 7);
}

TEST(InOrder, AFailureAtEitherEndLeavesNoThreadBehind) {
  const auto work = [](int& task) { return task; };
  const auto fail = [](int&) -> bool { throw std::runtime_error("reading"); };
  EXPECT_THROW(Ring(Workers(2, work), 4).Run(fail, [](int&) {}), std::runtime_error);
  EXPECT_THROW(Ring(Workers(2, work), 4).Run([](int&) { return true; }, [&fail](int& r) { fail(r); }),
               std::runtime_error);
}

TEST(InOrder, NothingToDoIsDone) {
  Ring(Workers(2, [](int& task) { return task; }), 2).Run([](int&) { return false; }, [](int&) { FAIL(); });
}

}  // namespace
}  // namespace orvanel::evaluation
