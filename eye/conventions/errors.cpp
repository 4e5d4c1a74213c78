// Words the errors of conventions.
#include "eye/conventions/errors.h"

#include <utility>

#include "base/number_text.h"
#include "eye/conventions/partial_convention.h"

namespace orvanel::eye {
namespace {

std::string TextOf(NameProblem problem, std::string_view name) {
  const std::string spellings = "write Z4, Z(2,0) or c[2,-2]", own = ", or rename the column if it is your own";
  const std::string quoted = Quoted(name), malformed = " looks like a coefficient but is not one";
  switch (problem) {
    case NameProblem::kNoSuchTerm:
      return quoted + " is not a Zernike term; write the radial order n (0 to " + std::to_string(kLargestOrder) +
             ") first and then m, from -n to n in steps of 2";
    case NameProblem::kMalformedTerm:
      return quoted + malformed +
             "; write Z(2,0) or c[2,-2] with radial order and azimuthal frequency, in quotes if commas separate the "
             "columns";
    case NameProblem::kSignedNumber:
      return quoted + " may be a coefficient or a term with a sign; " + spellings + own;
    case NameProblem::kNumberTooLarge:
      return quoted + malformed + ": its number is too large; " + spellings;
    case NameProblem::kUnitInName:
      return quoted + " is a coefficient with a unit in its name; " + spellings +
             ", and state the unit for all of them";
    case NameProblem::kMalformedName:
      break;
  }
  return quoted + malformed + "; " + spellings + own;
}

std::string TextOf(const std::vector<MissingPart>& missing) {
  std::string text;
  for (const MissingPart& part : missing) {
    text += text.empty() ? "the convention of the coefficients is incomplete; missing: " : "; ";
    text += part.key + " (" + part.values + ")";
  }
  return text;
}

std::string NameOf(std::size_t index) { return std::string("Z").append(std::to_string(index)); }

}  // namespace

InvalidCoefficientName::InvalidCoefficientName(NameProblem theProblem, std::string_view theName)
    : Error(TextOf(theProblem, theName)), problem(theProblem), name(theName) {}

IndexWithoutScheme::IndexWithoutScheme(std::size_t theIndex)
    : Error(NameOf(theIndex) +
            " is a number without an index scheme; state it as osa, noll or fringe, or write the term as Z(2,0)"),
      index(theIndex) {}

IndexNotInScheme::IndexNotInScheme(std::size_t theIndex, IndexScheme theScheme, std::size_t firstIndex,
                                   std::size_t lastIndex)
    : Error(NameOf(theIndex) + " is not in the index scheme " + std::string(Word(theScheme)) + ", whose numbers are " +
            std::to_string(firstIndex) + " to " + std::to_string(lastIndex)),
      index(theIndex),
      scheme(theScheme),
      first(firstIndex),
      last(lastIndex) {}

ListTooLong::ListTooLong(std::size_t itsLength, IndexScheme theScheme, std::size_t lengthOfScheme)
    : Error(std::to_string(itsLength) + " coefficients in the index scheme " + std::string(Word(theScheme)) +
            ", which has " + std::to_string(lengthOfScheme) + "; check the index scheme"),
      length(itsLength),
      scheme(theScheme),
      longest(lengthOfScheme) {}

TermNotInScheme::TermNotInScheme(ZernikeTerm theTerm, double theNumber, IndexScheme theScheme)
    : Error("the term " + Symbol(theTerm) + ", " + Name(theTerm) + ", is " + ShortestText(theNumber) +
            " and has no number in the index scheme " + std::string(Word(theScheme)) +
            "; convert to another, such as named"),
      term(theTerm),
      number(theNumber),
      scheme(theScheme) {}

UnknownWord::UnknownWord(std::string_view theKey, std::string_view theText, const std::string& knownWords)
    : Error(std::string(theKey) + " is " + Quoted(theText) + "; it is one of " + knownWords),
      key(theKey),
      text(theText),
      known(knownWords) {}

LengthNotPositive::LengthNotPositive(std::string_view theKey, std::string_view theText)
    : Error(std::string(theKey) + " is " + std::string(theText) + "; a length must be greater than 0"),
      key(theKey),
      text(theText) {}

WavelengthOutOfRange::WavelengthOutOfRange(std::string_view theKey, std::string_view theText, Nanometres shortestOne,
                                           Nanometres longestOne)
    : Error(std::string(theKey) + " is " + std::string(theText) + "; it is from " + ShortestText(shortestOne.value()) +
            " to " + ShortestText(longestOne.value()) + " nm. Write it in nanometres, such as 555"),
      key(theKey),
      text(theText),
      shortest(shortestOne),
      longest(longestOne) {}

ContradictingParts::ContradictingParts(std::string_view theKey, StatedPart widerPart, StatedPart narrowerPart)
    : Error(std::string(theKey) + " is " + narrowerPart.text + " in " + narrowerPart.source + ", which contradicts " +
            widerPart.source + ", where it is " + widerPart.text + "; state it once"),
      key(theKey),
      wider(std::move(widerPart)),
      narrower(std::move(narrowerPart)) {}

IncompleteConvention::IncompleteConvention(std::vector<MissingPart> missingParts)
    : Error(TextOf(missingParts)), missing(std::move(missingParts)) {}

WavelengthWithoutWaves::WavelengthWithoutWaves(Unit theUnit)
    : Error(std::string(kWavelengthKey) + " is stated, but the unit is " + std::string(Word(theUnit)) +
            "; only the unit waves has a wavelength. State the one at which the coefficients hold as " + kReferenceKey),
      unit(theUnit) {}

}  // namespace orvanel::eye
