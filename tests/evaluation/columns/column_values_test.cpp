// Tests missing values, and notes with several subjects.
#include "evaluation/columns/column_values.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orvanel::evaluation {
namespace {

TEST(ColumnValues, AreInOrderWithoutInfinitiesAndWithoutTheSignOfZero) {
  ColumnValues columns;
  for (const double value : {1.5, -0.0, std::numeric_limits<double>::infinity(), -2.0}) columns.Add(value);
  ASSERT_EQ(columns.values().size(), 4U);
  EXPECT_EQ(columns.values()[0], 1.5);
  EXPECT_FALSE(std::signbit(columns.values()[1]));
  EXPECT_TRUE(std::isnan(columns.values()[2]));
  EXPECT_EQ(columns.values()[3], -2.0);
}

TEST(ColumnValues, NoteEachReasonOnceWithItsSubjects) {
  ColumnValues columns;
  EXPECT_EQ(columns.Notes(), "");
  columns.Note("VSX", "the first reason");
  columns.Note("D50", "another one");
  columns.Note("SRX", "the first reason");
  EXPECT_EQ(columns.Notes(), "VSX, SRX: the first reason; D50: another one");
}

}  // namespace
}  // namespace orvanel::evaluation
