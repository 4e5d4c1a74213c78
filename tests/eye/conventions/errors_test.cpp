// Tests the fields and sentences of the errors of conventions.
#include "eye/conventions/errors.h"

#include <gtest/gtest.h>

namespace orvanel::eye {
namespace {

TEST(ConventionErrors, SayWhatIsWrongWithAName) {
  const auto text = [](NameProblem problem) { return std::string(InvalidCoefficientName(problem, "Zx").what()); };
  EXPECT_EQ(text(NameProblem::kNoSuchTerm),
            "'Zx' is not a Zernike term; write the radial order n (0 to 20) first and then m, from -n to n in steps "
            "of 2");
  EXPECT_EQ(text(NameProblem::kMalformedTerm),
            "'Zx' looks like a coefficient but is not one; write Z(2,0) or c[2,-2] with radial order and azimuthal "
            "frequency, in quotes if commas separate the columns");
  EXPECT_EQ(text(NameProblem::kSignedNumber),
            "'Zx' may be a coefficient or a term with a sign; write Z4, Z(2,0) or c[2,-2], or rename the column if it "
            "is your own");
  EXPECT_EQ(text(NameProblem::kNumberTooLarge),
            "'Zx' looks like a coefficient but is not one: its number is too large; write Z4, Z(2,0) or c[2,-2]");
  EXPECT_EQ(text(NameProblem::kUnitInName),
            "'Zx' is a coefficient with a unit in its name; write Z4, Z(2,0) or c[2,-2], and state the unit for all of "
            "them");
  EXPECT_EQ(text(NameProblem::kMalformedName),
            "'Zx' looks like a coefficient but is not one; write Z4, Z(2,0) or c[2,-2], or rename the column if it is "
            "your own");
}

TEST(ConventionErrors, SayWhatAnIndexSchemeLacks) {
  EXPECT_STREQ(IndexWithoutScheme(7).what(),
               "Z7 is a number without an index scheme; state it as osa, noll or fringe, or write the term as Z(2,0)");
  EXPECT_STREQ(IndexNotInScheme(38, IndexScheme::kFringe, 1, 37).what(),
               "Z38 is not in the index scheme fringe, whose numbers are 1 to 37");
  EXPECT_STREQ(ListTooLong(40, IndexScheme::kFringe, 37).what(),
               "40 coefficients in the index scheme fringe, which has 37; check the index scheme");
  const TermNotInScheme term({7, -7}, 0.25, IndexScheme::kFringe);
  EXPECT_STREQ(term.what(),
               "the term Z(7,-7), vertical heptafoil, is 0.25 and has no number in the index scheme fringe; convert to "
               "another, such as named");
  EXPECT_EQ(term.term, (ZernikeTerm{7, -7}));
  EXPECT_EQ(term.number, 0.25);
}

TEST(ConventionErrors, SayWhatIsWrongWithAPart) {
  EXPECT_STREQ(UnknownWord("y_axis", "left", "up, down").what(), "y_axis is 'left'; it is one of up, down");
  EXPECT_STREQ(LengthNotPositive("pupil_diameter_mm", "-6").what(),
               "pupil_diameter_mm is -6; a length must be greater than 0");
  EXPECT_STREQ(WavelengthOutOfRange("reference_wavelength_nm", "0.555", Nanometres(380.0), Nanometres(900.0)).what(),
               "reference_wavelength_nm is 0.555; it is from 380 to 900 nm. Write it in nanometres, such as 555");
  const ContradictingParts parts("unit", {"the command line", "mm"}, {"the table", "um"});
  EXPECT_EQ(parts.wider.text, "mm");
  EXPECT_EQ(parts.narrower.source, "the table");
  EXPECT_STREQ(parts.what(),
               "unit is um in the table, which contradicts the command line, where it is mm; state it once");
  const IncompleteConvention incomplete({{"unit", "mm, um"}, {"y_axis", "up, down"}});
  ASSERT_EQ(incomplete.missing.size(), 2U);
  EXPECT_EQ(incomplete.missing[1].key, "y_axis");
  EXPECT_STREQ(incomplete.what(),
               "the convention of the coefficients is incomplete; missing: unit (mm, um); y_axis (up, down)");
  EXPECT_STREQ(WavelengthWithoutWaves(Unit::kNanometres).what(),
               "wavelength_nm is stated, but the unit is nm; only the unit waves has a wavelength. State the one at "
               "which the coefficients hold as reference_wavelength_nm");
}

}  // namespace
}  // namespace orvanel::eye
