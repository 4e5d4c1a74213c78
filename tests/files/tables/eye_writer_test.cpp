// Tests that written rows of eyes are read back unchanged.
#include "files/tables/eye_writer.h"

#include <gtest/gtest.h>

#include <sstream>

#include "base/error.h"
#include "files/tables/eye_table.h"

namespace orvanel::files {
namespace {

Eye Lopsided(IndexScheme scheme) {
  Eye eye;
  eye.pupil = Millimetres(5.0 / 3.0);
  eye.side = Side::kOs;
  eye.coefficients = {{Unit::kWaves, Nanometres(543.21), Normalisation::kNone, scheme, YAxis::kDown},
                      {0, 0, 0, 1.0 / 3.0, -2.0 / 7.0, 0, 5e-324, 0, 0, 1e300, 0, 0, 0.1}};
  return eye;
}

const std::vector<std::size_t> kTerms = {3, 4, 6, 9, 12};

TEST(EyeWriter, RowsAreReadBackToTheBit) {
  for (const IndexScheme scheme : {IndexScheme::kOsa, IndexScheme::kNoll, IndexScheme::kFringe, IndexScheme::kNamed}) {
    const EyeWriter writer({"id", "note"}, scheme, kTerms, false);
    const Eye eye = Lopsided(scheme);
    std::istringstream stream(writer.Header() + writer.Row(eye, {"", "a,\"b\"\nc"}));
    EyeTable table(stream, "t.csv", TableKind::kCsv, {});
    TableEye row;
    ASSERT_TRUE(table.Next(row)) << Word(scheme);
    EXPECT_EQ(row.identifiers, (std::vector<std::string>{"", "a,\"b\"\nc"}));
    EXPECT_EQ(row.eye.pupil, eye.pupil);
    EXPECT_EQ(row.eye.side, eye.side);
    EXPECT_EQ(row.eye.coefficients, eye.coefficients);
  }
}

TEST(EyeWriter, KeepsTheReferenceWavelengthOfEachRow) {
  Eye infrared = Lopsided(IndexScheme::kOsa), unknown = infrared;
  infrared.referenceWavelength = Nanometres(2550.0 / 3.0);
  const EyeWriter writer({}, IndexScheme::kOsa, kTerms, true);
  std::istringstream stream(writer.Header() + writer.Row(infrared, {}) + writer.Row(unknown, {}));
  EyeTable table(stream, "t.csv", TableKind::kCsv, {});
  TableEye row;
  ASSERT_TRUE(table.Next(row));
  EXPECT_EQ(row.eye.referenceWavelength, infrared.referenceWavelength);
  EXPECT_EQ(row.eye.coefficients, infrared.coefficients);
  ASSERT_TRUE(table.Next(row));
  EXPECT_EQ(row.eye.referenceWavelength, std::nullopt);
  const EyeWriter without({}, IndexScheme::kOsa, kTerms, false);
  EXPECT_NO_THROW(without.Row(unknown, {}));
  EXPECT_THROW(without.Row(infrared, {}), Error);
}

TEST(EyeWriter, WhatHasNoColumnIsRefusedUnlessItIsZero) {
  const EyeWriter writer({}, IndexScheme::kOsa, {3, 4}, false);
  Eye eye = Lopsided(IndexScheme::kOsa);
  EXPECT_THROW(writer.Row(eye, {}), Error);
  eye.coefficients = {eye.coefficients.convention(), {0, 0, 0, 1, 2, 0}};
  EXPECT_NO_THROW(writer.Row(eye, {}));
}

TEST(EyeWriter, FringeRefusesTheSixfoldTerms) {
  const std::size_t hexafoil = OsaIndex({6, 6});
  const EyeWriter writer({}, IndexScheme::kFringe, {4, hexafoil}, false);
  EXPECT_EQ(writer.Header(), "pupil_diameter_mm,eye,unit,wavelength_nm,normalisation,order,y_axis,Z4\n");
  Eye eye = Lopsided(IndexScheme::kFringe);
  eye.coefficients = {eye.coefficients.convention(), Coefficients(hexafoil + 1)};
  EXPECT_NO_THROW(writer.Row(eye, {}));
  Coefficients numbers(hexafoil + 1);
  numbers[hexafoil] = 0.1;
  eye.coefficients = {eye.coefficients.convention(), std::move(numbers)};
  EXPECT_THROW(writer.Row(eye, {}), Error);
}

TEST(EyeWriter, RescalingMakesTermsOfLowerOrder) {
  EXPECT_EQ(WithLowerOrders({OsaIndex({6, 2}), OsaIndex({3, -1})}),
            (std::vector<std::size_t>{OsaIndex({1, -1}), OsaIndex({2, 2}), OsaIndex({3, -1}), OsaIndex({4, 2}),
                                      OsaIndex({6, 2})}));
}

}  // namespace
}  // namespace orvanel::files
