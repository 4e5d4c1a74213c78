// Tests valid and invalid names of coefficients.
#include "eye/conventions/column_name.h"

#include <gtest/gtest.h>

#include "eye/conventions/errors.h"

namespace orvanel::eye {
namespace {

ZernikeTerm TermIn(const std::string& text, std::optional<IndexScheme> scheme = std::nullopt) {
  return TermNamed(ParseCoefficientName(text).value(), scheme);
}

TEST(ColumnName, ByOrderAndFrequencyNeedsNoOrderOfNumbers) {
  for (const char* text : {"Z(3,-1)", "c[3,-1]", "C(3, -1)", "z[ 3 ,-1 ]", "Z(+3,-1)", " Z(3,-1)", "Z (3,-1)",
                           "Zernike(3,-1)", "Z_3_-1", "z_3_-1\t", "Z 3 -1", "Z3,-1", "Z3_-1", "C_3_-1", "Zernike_3_-1",
                           "Z_3_\xE2\x88\x92"
                           "1",
                           "Z(3,\xE2\x88\x92"
                           "1)"}) {
    EXPECT_EQ(TermIn(text), (ZernikeTerm{3, -1})) << text;
  }
}

TEST(ColumnName, ByNumberMeansWhatTheOrderSays) {
  EXPECT_EQ(TermIn("Z8", IndexScheme::kOsa), (ZernikeTerm{3, 1}));
  EXPECT_EQ(TermIn("c8", IndexScheme::kNoll), (ZernikeTerm{3, 1}));
  EXPECT_EQ(TermIn("Z8", IndexScheme::kFringe), (ZernikeTerm{3, -1}));
  EXPECT_EQ(TermIn("Z08", IndexScheme::kFringe), (ZernikeTerm{3, -1}));
  for (const char* text : {" Z12", "Z12 ", "Z 12", "z 12", "Z_12", "Z_ 12", "c_12", "C 12", "Zernike12", "zernike 12",
                           "ZERNIKE_12", "\tZ12",
                           "Z\xC2\xA0"
                           "12"}) {
    EXPECT_EQ(TermIn(text, IndexScheme::kOsa), (ZernikeTerm{4, 0})) << text;
  }
}

TEST(ColumnName, ByNumberWithoutOrderIsRefused) {
  EXPECT_THROW(TermIn("Z4"), IndexWithoutScheme);
  EXPECT_THROW(TermIn("Z4", IndexScheme::kNamed), IndexWithoutScheme);
}

TEST(ColumnName, OutsideItsOrderIsRefused) {
  EXPECT_THROW(TermIn("Z0", IndexScheme::kNoll), IndexNotInScheme);
  EXPECT_THROW(TermIn("Z38", IndexScheme::kFringe), IndexNotInScheme);
  EXPECT_THROW(TermIn("Z231", IndexScheme::kOsa), IndexNotInScheme);
  EXPECT_EQ(TermIn("Z230", IndexScheme::kOsa), (ZernikeTerm{20, 20}));
}

TEST(ColumnName, OtherWordsAreNone) {
  for (const char* text :
       {"",         "Z",           "c",       "id",       "Zernike", "comment",   "age",         "4",
        "Zn4",      "zone",        "code1",   "C1_visit", "c3 left", "C-peptide", "CO2",         "C6H12O6",
        "c (mg/l)", "C(reactive)", "Z-score", "z score",  "a4",      "  ",        "Zernike fit", "(2,0)"}) {
    EXPECT_EQ(ParseCoefficientName(text), std::nullopt) << text;
  }
}

TEST(ColumnName, WhatLooksLikeOneAndIsNoneIsRefused) {
  for (const char* text : {"Z(2,1)",
                           "Z(1,3)",
                           "Z(-2,0)",
                           "Z(2",
                           "Z(2,0",
                           "Z(2,0]",
                           "Z(2;0)",
                           "Z(2,0)x",
                           "Z4_um",
                           "c4.5",
                           "Z(22,0)",
                           "Z()",
                           "Z(2)",
                           "Z99999999999999999999999",
                           "Z-12",
                           "Z_-12",
                           "C-12",
                           "Z.4",
                           "Z3-1",
                           "Z+4",
                           "Z1_3",
                           "C_1_2",
                           "Z_3_1_2",
                           "Z 4 um",
                           "Z4(\xC2\xB5m)",
                           "c4_um",
                           "C4 waves",
                           "Z4_OD",
                           "Z12 left",
                           "Z3^1",
                           "Zernike coefficient 4"}) {
    EXPECT_THROW(ParseCoefficientName(text), InvalidCoefficientName) << text;
  }
}

TEST(ColumnName, ARefusalHasItsReasonAndTheName) {
  const std::pair<const char*, NameProblem> names[] = {{"Z(2,1)", NameProblem::kNoSuchTerm},
                                                       {"Z_22_0", NameProblem::kNoSuchTerm},
                                                       {"Z(2)", NameProblem::kMalformedTerm},
                                                       {"c[2,0)", NameProblem::kMalformedTerm},
                                                       {"Z-12", NameProblem::kSignedNumber},
                                                       {"C.4", NameProblem::kSignedNumber},
                                                       {"Z4 um", NameProblem::kUnitInName},
                                                       {"c4(waves)", NameProblem::kUnitInName},
                                                       {"Z4_OD", NameProblem::kMalformedName},
                                                       {"Z3^1", NameProblem::kMalformedName},
                                                       {"Z99999999999999999999999", NameProblem::kNumberTooLarge}};
  for (const auto& [name, problem] : names) {
    try {
      ParseCoefficientName(name);
      ADD_FAILURE() << name;
    } catch (const InvalidCoefficientName& error) {
      EXPECT_EQ(error.problem, problem) << name;
      EXPECT_EQ(error.name, name);
    }
  }
}

TEST(ColumnName, IsReadAsItIsWritten) {
  for (const IndexScheme scheme : {IndexScheme::kOsa, IndexScheme::kNoll, IndexScheme::kFringe, IndexScheme::kNamed}) {
    for (std::size_t j = 0; j < 21; ++j)
      EXPECT_EQ(TermIn(NameIn(scheme, Term(j)), scheme), Term(j)) << NameIn(scheme, Term(j));
  }
}

}  // namespace
}  // namespace orvanel::eye
