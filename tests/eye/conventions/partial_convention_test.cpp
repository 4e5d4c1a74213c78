// Tests partial conventions: missing parts are listed, contradictions are refused.
#include "eye/conventions/partial_convention.h"

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

PartialConvention Whole() {
  PartialConvention parts = PartsOf(kOsaConvention);
  parts.side = Side::kOs;
  parts.pupil = Millimetres(5.5);
  return parts;
}

TEST(PartialConvention, WhatIsMissingIsListed) {
  EXPECT_EQ(MessageOf([] { Complete({}, true); }),
            "the convention of the coefficients is incomplete; missing: unit (mm, um, nm, waves); normalisation "
            "(orthonormal, none); order (osa, noll, fringe, named); y_axis (up, down); eye (OD, OS, unknown); "
            "pupil_diameter_mm (over which the eye was measured)");
  PartialConvention parts = Whole();
  parts.yAxis.reset();
  EXPECT_EQ(MessageOf([&] { Complete(parts, true); }),
            "the convention of the coefficients is incomplete; missing: y_axis (up, down)");
}

TEST(PartialConvention, AnOrderIsNeededOnlyByNumbers) {
  PartialConvention parts = Whole();
  parts.scheme.reset();
  EXPECT_NE(MessageOf([&] { Complete(parts, true); }), "");
  EXPECT_EQ(Complete(parts, false).convention.scheme, IndexScheme::kNamed);
}

TEST(PartialConvention, WavesNeedAWavelengthAndNothingElseHasOne) {
  PartialConvention parts = Whole();
  parts.unit = Unit::kWaves;
  EXPECT_EQ(MessageOf([&] { Complete(parts, true); }),
            "the convention of the coefficients is incomplete; missing: wavelength_nm (of one wave)");
  parts.wavelength = Nanometres(550.0);
  EXPECT_EQ(Complete(parts, true).convention.wavelength, Nanometres(550.0));
  parts.unit = Unit::kNanometres;
  EXPECT_EQ(MessageOf([&] { Complete(parts, true); }),
            "wavelength_nm is stated, but the unit is nm; only the unit waves has a wavelength. State the one at which "
            "the coefficients hold as reference_wavelength_nm");
}

TEST(PartialConvention, TheReferenceWavelengthIsNeverTakenFromTheUnitWaves) {
  PartialConvention parts = Whole();
  parts.unit = Unit::kWaves;
  parts.wavelength = Nanometres(550.0);
  EXPECT_EQ(Complete(parts, true).reference, std::nullopt);
  SetPart(parts, "reference_wavelength_nm", "850");
  EXPECT_EQ(Complete(parts, true).reference, Nanometres(850.0));
  EXPECT_EQ(Complete(parts, true).convention.wavelength, Nanometres(550.0));
  parts.wavelength.reset();
  EXPECT_NE(MessageOf([&] { Complete(parts, true); }), "");
}

TEST(PartialConvention, TheReferenceWavelengthBelongsToAnyUnit) {
  PartialConvention parts = Whole();
  parts.reference = Nanometres(555.0);
  EXPECT_EQ(Complete(parts, true).reference, Nanometres(555.0));
}

TEST(PartialConvention, TheReferenceWavelengthHasLimits) {
  PartialConvention parts;
  for (const char* text : {"300", "1200"}) EXPECT_TRUE(SetPart(parts, "reference_wavelength_nm", text)) << text;
  EXPECT_EQ(parts.reference, Nanometres(1200.0));
  for (const std::string text : {"299.9", "1200.1", "0.555", "0", "-555"}) {
    EXPECT_EQ(
        MessageOf([&] { SetPart(parts, "reference_wavelength_nm", text); }),
        "reference_wavelength_nm is " + text + "; it is from 300 to 1200 nm. Write it in nanometres, such as 555");
  }
  EXPECT_EQ(parts.reference, Nanometres(1200.0));
}

TEST(PartialConvention, IsCompletedByAnother) {
  PartialConvention table = Whole(), row;
  table.side.reset();
  SetPart(row, "eye", "OD");
  SetPart(row, "unit", "um");  // the same again
  const CompleteConvention complete = Complete(Combined(table, "the command line", row, "the table"), true);
  EXPECT_EQ(complete.side, Side::kOd);
  EXPECT_EQ(complete.pupil, Millimetres(5.5));
  EXPECT_EQ(complete.convention, kOsaConvention);
}

TEST(PartialConvention, ThatContradictsIsRefused) {
  PartialConvention row;
  SetPart(row, "pupil_diameter_mm", "6");
  EXPECT_EQ(MessageOf([&] { Combined(Whole(), "the command line", row, "the table"); }),
            "pupil_diameter_mm is 6 in the table, which contradicts the command line, where it is 5.5; state it once");
  PartialConvention infrared, green;
  infrared.reference = Nanometres(850.0);
  green.reference = Nanometres(555.0);
  EXPECT_EQ(MessageOf([&] { Combined(green, "the command line", infrared, "the file"); }),
            "reference_wavelength_nm is 850 in the file, which contradicts the command line, where it is 555; state "
            "it once");
  EXPECT_EQ(Combined(infrared, "", infrared, "").reference, Nanometres(850.0));
}

TEST(PartialConvention, PartsHaveTheirWords) {
  PartialConvention parts;
  EXPECT_EQ(MessageOf([&] { SetPart(parts, "unit", "inch"); }), "unit is 'inch'; it is one of mm, um, nm, waves");
  EXPECT_EQ(MessageOf([&] { SetPart(parts, "eye", "third"); }), "eye is 'third'; it is one of OD, OS, unknown");
  EXPECT_EQ(MessageOf([&] { SetPart(parts, "pupil_diameter_mm", "-6"); }),
            "pupil_diameter_mm is -6; a length must be greater than 0");
  EXPECT_EQ(MessageOf([&] { SetPart(parts, "wavelength_nm", "0"); }),
            "wavelength_nm is 0; a length must be greater than 0");
  EXPECT_FALSE(SetPart(parts, "colour", "green"));
}

}  // namespace
}  // namespace orvanel::eye
