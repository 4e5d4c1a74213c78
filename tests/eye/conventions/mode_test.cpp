// Tests indices of terms against the published tables, and their names.
#include "eye/conventions/mode.h"

#include <gtest/gtest.h>

#include <set>

namespace orvanel::eye {
namespace {

TEST(Term, OsaNumbersRunByOrderAndThenByFrequency) {
  std::size_t j = 0;
  for (int n = 0; n <= kLargestOrder; ++n) {
    for (int m = -n; m <= n; m += 2, ++j) {
      EXPECT_EQ(Term(j), (ZernikeTerm{n, m})) << j;
      EXPECT_EQ(OsaIndex({n, m}), j);
    }
  }
  EXPECT_EQ(j, kMaxTerms);
}

// Noll (1976), Table I, and its continuation.
constexpr ZernikeTerm kNoll[] = {{0, 0},  {1, 1}, {1, -1}, {2, 0}, {2, -2}, {2, 2}, {3, -1}, {3, 1}, {3, -3}, {3, 3},
                                 {4, 0},  {4, 2}, {4, -2}, {4, 4}, {4, -4}, {5, 1}, {5, -1}, {5, 3}, {5, -3}, {5, 5},
                                 {5, -5}, {6, 0}, {6, -2}, {6, 2}, {6, -4}, {6, 4}, {6, -6}, {6, 6}, {7, -1}, {7, 1},
                                 {7, -3}, {7, 3}, {7, -5}, {7, 5}, {7, -7}, {7, 7}, {8, 0}};

TEST(Term, NollNumbersAreThoseOfThePublishedTable) {
  std::size_t number = 0;
  for (const ZernikeTerm& term : kNoll) {
    ++number;
    EXPECT_EQ(TermOfNoll(number), term) << number;
    EXPECT_EQ(NollIndex(term), number);
  }
}

TEST(Term, NollNumbersReachEveryTermOnce) {
  std::set<std::size_t> seen;
  for (std::size_t j = 0; j < kMaxTerms; ++j) {
    EXPECT_TRUE(seen.insert(NollIndex(Term(j))).second) << j;
    EXPECT_EQ(TermOfNoll(NollIndex(Term(j))), Term(j)) << j;
    // Even numbers are cosines.
    if (Term(j).m != 0) {
      EXPECT_EQ(NollIndex(Term(j)) % 2 == 0, Term(j).m > 0) << j;
    }
  }
  EXPECT_EQ(*seen.begin(), 1U);
  EXPECT_EQ(*seen.rbegin(), kMaxTerms);
  EXPECT_EQ(TermOfNoll(0), std::nullopt);
  EXPECT_EQ(TermOfNoll(kMaxTerms + 1), std::nullopt);
}

// The set of the University of Arizona, by its polynomials.
constexpr ZernikeTerm kFringe[] = {
    {0, 0},  {1, 1},  {1, -1}, {2, 0}, {2, 2},  {2, -2}, {3, 1},  {3, -1}, {4, 0},  {3, 3},  {3, -3}, {4, 2}, {4, -2},
    {5, 1},  {5, -1}, {6, 0},  {4, 4}, {4, -4}, {5, 3},  {5, -3}, {6, 2},  {6, -2}, {7, 1},  {7, -1}, {8, 0}, {5, 5},
    {5, -5}, {6, 4},  {6, -4}, {7, 3}, {7, -3}, {8, 2},  {8, -2}, {9, 1},  {9, -1}, {10, 0}, {12, 0}};

TEST(Term, FringeNumbersAreThoseOfTheThirtySevenTerms) {
  std::size_t number = 0;
  for (const ZernikeTerm& term : kFringe) {
    ++number;
    EXPECT_EQ(TermOfFringe(number), term) << number;
    EXPECT_EQ(FringeIndex(term), number);
  }
  EXPECT_EQ(number, kFringeTerms);
}

TEST(Term, FringeHasNoPlaceForAnyOther) {
  std::set<std::size_t> seen;
  for (std::size_t j = 0; j < kMaxTerms; ++j) {
    const auto number = FringeIndex(Term(j));
    if (number) {
      EXPECT_TRUE(seen.insert(*number).second) << j;
    }
  }
  EXPECT_EQ(seen.size(), kFringeTerms);
  EXPECT_EQ(FringeIndex({6, 6}), std::nullopt);
  EXPECT_EQ(FringeIndex({6, -6}), std::nullopt);
  EXPECT_EQ(FringeIndex({20, 0}), std::nullopt);
  EXPECT_EQ(TermOfFringe(0), std::nullopt);
  EXPECT_EQ(TermOfFringe(38), std::nullopt);
}

TEST(Term, ExistsWhereOrderAndFrequencyFit) {
  EXPECT_TRUE(IsTerm({3, -1}));
  EXPECT_FALSE(IsTerm({3, 0}));
  EXPECT_FALSE(IsTerm({2, 4}));
  EXPECT_FALSE(IsTerm({-2, 0}));
  EXPECT_FALSE(IsTerm({22, 0}));
}

TEST(Term, HasTheNameThatClinicsUse) {
  EXPECT_EQ(Name({0, 0}), "piston");
  EXPECT_EQ(Name({1, -1}), "vertical tilt");
  EXPECT_EQ(Name({1, 1}), "horizontal tilt");
  EXPECT_EQ(Name({2, -2}), "oblique astigmatism");
  EXPECT_EQ(Name({2, 0}), "defocus");
  EXPECT_EQ(Name({2, 2}), "vertical astigmatism");
  EXPECT_EQ(Name({3, -3}), "vertical trefoil");
  EXPECT_EQ(Name({3, -1}), "vertical coma");
  EXPECT_EQ(Name({3, 1}), "horizontal coma");
  EXPECT_EQ(Name({3, 3}), "oblique trefoil");
  EXPECT_EQ(Name({4, -4}), "oblique quadrafoil");
  EXPECT_EQ(Name({4, 0}), "primary spherical aberration");
  EXPECT_EQ(Name({4, 2}), "secondary vertical astigmatism");
  EXPECT_EQ(Name({5, 1}), "secondary horizontal coma");
  EXPECT_EQ(Name({5, -5}), "vertical pentafoil");
  EXPECT_EQ(Name({6, 0}), "secondary spherical aberration");
  EXPECT_EQ(Name({6, -2}), "tertiary oblique astigmatism");
  EXPECT_EQ(Name({12, 0}), "5th spherical aberration");
  EXPECT_EQ(Symbol({3, -1}), "Z(3,-1)");
}

TEST(Term, HasTheNameOfItsFolds) {
  const char* const folds[] = {"trefoil", "quadrafoil", "pentafoil", "hexafoil", "heptafoil", "octafoil", "9-foil"};
  int n = 3;
  for (const std::string name : folds) {
    // Vertical is what the mirror image left to right leaves alone: sines of odd frequency, cosines of even frequency.
    const int vertical = n % 2 == 0 ? n : -n;
    EXPECT_EQ(Name({n, vertical}), "vertical " + name);
    EXPECT_EQ(Name({n, -vertical}), "oblique " + name);
    EXPECT_EQ(Name({n + 2, vertical}), "secondary vertical " + name);
    EXPECT_EQ(Name({n + 4, -vertical}), "tertiary oblique " + name);
    ++n;
  }
}

TEST(Term, NamesAreAllDifferent) {
  std::set<std::string> names;
  for (std::size_t j = 0; j < kMaxTerms; ++j) EXPECT_TRUE(names.insert(Name(Term(j))).second) << Name(Term(j));
}

}  // namespace
}  // namespace orvanel::eye
