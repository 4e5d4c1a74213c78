// Tests the places of keys and elements.
#include "files/eyes/json_place.h"

#include <gtest/gtest.h>

#include <ostream>

namespace orvanel::files {
namespace {

constexpr const char* kText = R"({
  "note": "a \"unit\": here",
  "convention": {"name": "unit", "unit" : "um"},
  "coefficients": [0, 0.1,
     "x,y", 4], "é": 1, "eye": "OD"
})";

void ExpectPlace(Place place, std::size_t line, std::size_t column) {
  EXPECT_EQ(place.line, line);
  EXPECT_EQ(place.column, column);
}

TEST(JsonPlace, OfAByteIsItsLineAndCharacter) {
  ExpectPlace(PlaceOfByte(kText, 0), 1, 1);
  ExpectPlace(PlaceOfByte("a\nb\xC3\xA4"
                          "c",
                          5),
              2, 3);
  ExpectPlace(PlaceOfByte("a\n", 2), 2, 1);
}

TEST(JsonPlace, CharactersAreCountedFromLeftToRight) {
  CharacterCount characters(
      "a\xC3\xA4\xE2\x88\x92"
      "b");
  EXPECT_EQ(characters.Before(0), 0U);
  EXPECT_EQ(characters.Before(1), 1U);
  EXPECT_EQ(characters.Before(3), 2U);
  EXPECT_EQ(characters.Before(3), 2U);
  EXPECT_EQ(characters.Before(7), 4U);
}

TEST(JsonPlace, OfAKeyIsWhereItsQuotesOpen) {
  ExpectPlace(PlaceOfKey(kText, {"note"}), 2, 3);
  ExpectPlace(PlaceOfKey(kText, {"convention", "unit"}), 3, 34);
  ExpectPlace(PlaceOfKey(kText, {"eye"}), 5, 25);
}

TEST(JsonPlace, OfAKeyThatIsNotThereIsThatOfTheKeyAroundIt) {
  ExpectPlace(PlaceOfKey(kText, {"convention", "order"}), 3, 3);
  ExpectPlace(PlaceOfKey(kText, {"pupil"}), 1, 1);
}

TEST(JsonPlace, OfAnElementIsItsFirstCharacter) {
  ExpectPlace(PlaceOfElement(kText, "coefficients", 0), 4, 20);
  ExpectPlace(PlaceOfElement(kText, "coefficients", 1), 4, 23);
  ExpectPlace(PlaceOfElement(kText, "coefficients", 2), 5, 6);
  ExpectPlace(PlaceOfElement(kText, "coefficients", 3), 5, 13);
}

}  // namespace
}  // namespace orvanel::files
