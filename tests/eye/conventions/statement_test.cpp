// Tests partial conventions: missing parts are listed, contradictions are refused.
#include "eye/conventions/statement.h"

#include <gtest/gtest.h>

#include <functional>

#include "base/error.h"

namespace orvanel::eye {
namespace {

std::string MessageOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const Error& error) {
    return error.what();
  }
  return {};
}

Statement Whole() {
  Statement statement = StatementOf(kOsaConvention);
  statement.side = Side::kOs;
  statement.pupil = Millimetres(5.5);
  return statement;
}

TEST(Statement, WhatIsMissingIsListed) {
  EXPECT_EQ(MessageOf([] { Complete({}, true); }),
            "the convention of the coefficients is incomplete; missing: unit (mm, um, nm, waves); normalisation "
            "(orthonormal, none); order (osa, noll, fringe, named); y_axis (up, down); eye (OD, OS, unknown); "
            "pupil_diameter_mm (over which the eye was measured)");
  Statement statement = Whole();
  statement.yAxis.reset();
  EXPECT_EQ(MessageOf([&] { Complete(statement, true); }),
            "the convention of the coefficients is incomplete; missing: y_axis (up, down)");
}

TEST(Statement, AnOrderIsNeededOnlyByNumbers) {
  Statement statement = Whole();
  statement.scheme.reset();
  EXPECT_NE(MessageOf([&] { Complete(statement, true); }), "");
  EXPECT_EQ(Complete(statement, false).convention.scheme, IndexScheme::kNamed);
}

TEST(Statement, WavesNeedAWavelengthAndNothingElseHasOne) {
  Statement statement = Whole();
  statement.unit = Unit::kWaves;
  EXPECT_EQ(MessageOf([&] { Complete(statement, true); }),
            "the convention of the coefficients is incomplete; missing: wavelength_nm (of one wave)");
  statement.wavelength = Nanometres(550.0);
  EXPECT_EQ(Complete(statement, true).convention.wavelength, Nanometres(550.0));
  statement.unit = Unit::kNanometres;
  EXPECT_EQ(MessageOf([&] { Complete(statement, true); }),
            "wavelength_nm is stated, but the unit is nm; only the unit waves has a wavelength. State the one at which "
            "the coefficients hold as reference_wavelength_nm");
}

TEST(Statement, TheReferenceWavelengthIsNeverTakenFromTheUnitWaves) {
  Statement statement = Whole();
  statement.unit = Unit::kWaves;
  statement.wavelength = Nanometres(550.0);
  EXPECT_EQ(Complete(statement, true).reference, std::nullopt);
  State(statement, "reference_wavelength_nm", "850");
  EXPECT_EQ(Complete(statement, true).reference, Nanometres(850.0));
  EXPECT_EQ(Complete(statement, true).convention.wavelength, Nanometres(550.0));
  statement.wavelength.reset();
  EXPECT_NE(MessageOf([&] { Complete(statement, true); }), "");
}

TEST(Statement, TheReferenceWavelengthBelongsToAnyUnit) {
  Statement statement = Whole();
  statement.reference = Nanometres(555.0);
  EXPECT_EQ(Complete(statement, true).reference, Nanometres(555.0));
}

TEST(Statement, TheReferenceWavelengthHasLimits) {
  Statement statement;
  for (const char* text : {"300", "1200"}) EXPECT_TRUE(State(statement, "reference_wavelength_nm", text)) << text;
  EXPECT_EQ(statement.reference, Nanometres(1200.0));
  for (const std::string text : {"299.9", "1200.1", "0.555", "0", "-555"}) {
    EXPECT_EQ(
        MessageOf([&] { State(statement, "reference_wavelength_nm", text); }),
        "reference_wavelength_nm is " + text + "; it is from 300 to 1200 nm. Write it in nanometres, such as 555");
  }
  EXPECT_EQ(statement.reference, Nanometres(1200.0));
}

TEST(Statement, IsCompletedByAnother) {
  Statement table = Whole(), row;
  table.side.reset();
  State(row, "eye", "OD");
  State(row, "unit", "um");  // the same again
  const StatedConvention complete = Complete(Combined(table, "the command line", row, "the table"), true);
  EXPECT_EQ(complete.side, Side::kOd);
  EXPECT_EQ(complete.pupil, Millimetres(5.5));
  EXPECT_EQ(complete.convention, kOsaConvention);
}

TEST(Statement, ThatContradictsIsRefused) {
  Statement row;
  State(row, "pupil_diameter_mm", "6");
  EXPECT_EQ(MessageOf([&] { Combined(Whole(), "the command line", row, "the table"); }),
            "pupil_diameter_mm is 6 in the table, which contradicts the command line, where it is 5.5; state it once");
  Statement infrared, green;
  infrared.reference = Nanometres(850.0);
  green.reference = Nanometres(555.0);
  EXPECT_EQ(MessageOf([&] { Combined(green, "the command line", infrared, "the file"); }),
            "reference_wavelength_nm is 850 in the file, which contradicts the command line, where it is 555; state "
            "it once");
  EXPECT_EQ(Combined(infrared, "", infrared, "").reference, Nanometres(850.0));
}

TEST(Statement, PartsHaveTheirWords) {
  Statement statement;
  EXPECT_EQ(MessageOf([&] { State(statement, "unit", "inch"); }), "unit is 'inch'; it is one of mm, um, nm, waves");
  EXPECT_EQ(MessageOf([&] { State(statement, "eye", "third"); }), "eye is 'third'; it is one of OD, OS, unknown");
  EXPECT_EQ(MessageOf([&] { State(statement, "pupil_diameter_mm", "-6"); }),
            "pupil_diameter_mm is -6; a length must be greater than 0");
  EXPECT_EQ(MessageOf([&] { State(statement, "wavelength_nm", "0"); }),
            "wavelength_nm is 0; a length must be greater than 0");
  EXPECT_FALSE(State(statement, "colour", "green"));
}

}  // namespace
}  // namespace orvanel::eye
