// Defines the errors of conventions and of coefficients' names. Their fields describe the problem, so that a host can
// word its own messages.
#ifndef ORVANEL_EYE_CONVENTIONS_ERRORS_H
#define ORVANEL_EYE_CONVENTIONS_ERRORS_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "base/layers.h"
#include "base/units.h"
#include "eye/conventions/convention.h"
#include "eye/conventions/mode.h"

namespace orvanel::eye {

// ---- Names of coefficients

enum class NameProblem {
  kNoSuchTerm,      // "Z(2,1)": no term has these numbers
  kMalformedTerm,   // "Z(2": the brackets do not hold two numbers
  kSignedNumber,    // "Z-4": a coefficient, or a term with a sign
  kNumberTooLarge,  // of an index
  kUnitInName,      // "Z4_um"
  kMalformedName,   // it begins like a coefficient and has another end
};

// A text looks like the name of a coefficient but is not one.
class InvalidCoefficientName : public Error {
 public:
  InvalidCoefficientName(NameProblem theProblem, std::string_view theName);

  NameProblem problem;
  std::string name;
};

// The name of a coefficient is an index, but no index scheme is stated.
class IndexWithoutScheme : public Error {
 public:
  explicit IndexWithoutScheme(std::size_t theIndex);

  std::size_t index;
};

// An index scheme does not have this index.
class IndexNotInScheme : public Error {
 public:
  IndexNotInScheme(std::size_t theIndex, IndexScheme theScheme, std::size_t firstIndex, std::size_t lastIndex);

  std::size_t index;
  IndexScheme scheme;
  std::size_t first, last;  // of the scheme
};

// ---- Lists of coefficients

// A list has more coefficients than its index scheme.
class ListTooLong : public Error {
 public:
  ListTooLong(std::size_t itsLength, IndexScheme theScheme, std::size_t lengthOfScheme);

  std::size_t length;
  IndexScheme scheme;
  std::size_t longest;
};

// A term that is not 0 has no index in an index scheme.
class TermNotInScheme : public Error {
 public:
  TermNotInScheme(ZernikeTerm theTerm, double theNumber, IndexScheme theScheme);

  ZernikeTerm term;
  double number;
  IndexScheme scheme;
};

// ---- Parts of a convention. Keys are those of the partial convention, texts are as the file or option has them.

// A text is not one of the words of a part.
class UnknownWord : public Error {
 public:
  //   knownWords  separated by commas
  UnknownWord(std::string_view theKey, std::string_view theText, const std::string& knownWords);

  std::string key, text, known;
};

// A length is not above 0.
class LengthNotPositive : public Error {
 public:
  LengthNotPositive(std::string_view theKey, std::string_view theText);

  std::string key, text;
};

// A wavelength of light is outside the range of the models.
class WavelengthOutOfRange : public Error {
 public:
  WavelengthOutOfRange(std::string_view theKey, std::string_view theText, Nanometres shortestOne,
                       Nanometres longestOne);

  std::string key, text;
  Nanometres shortest, longest;
};

// What one source states for a part.
struct StatedPart {
  std::string source;  // "the command line"
  std::string text;
};

// Two sources contradict each other in one part.
class ContradictingParts : public Error {
 public:
  ContradictingParts(std::string_view theKey, StatedPart widerPart, StatedPart narrowerPart);

  std::string key;
  StatedPart wider, narrower;
};

struct MissingPart {
  std::string key;
  std::string values;  // its words, or what it is: "of one wave"
};

// Parts of a convention are not stated.
class IncompleteConvention : public Error {
 public:
  explicit IncompleteConvention(std::vector<MissingPart> missingParts);

  std::vector<MissingPart> missing;
};

// The wavelength of the unit waves is stated, but the unit is another.
class WavelengthWithoutWaves : public Error {
 public:
  explicit WavelengthWithoutWaves(Unit theUnit);

  Unit unit;
};

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_CONVENTIONS_ERRORS_H
