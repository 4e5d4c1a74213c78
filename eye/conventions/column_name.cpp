// Parses the names of coefficients from left to right.
#include "eye/conventions/column_name.h"

#include <charconv>

#include "eye/conventions/errors.h"

namespace orvanel::eye {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Converts to lower case, replaces special blanks and minus signs by plain ones, and trims blanks.
std::string Plain(std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view rest = text.substr(at);
    if (rest.starts_with("\u00a0") || rest.starts_with("\t")) {
      plain += ' ';
      at += rest[0] == '\t' ? 1 : 2;
    } else if (rest.starts_with("\u2212")) {
      plain += '-';
      at += 3;
    } else {
      plain += rest[0] >= 'A' && rest[0] <= 'Z' ? static_cast<char>(rest[0] - 'A' + 'a') : rest[0];
      ++at;
    }
  }
  const std::size_t first = plain.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return plain.substr(first, plain.find_last_not_of(' ') + 1 - first);
}

bool Take(std::string_view& text, std::string_view beginning) {
  if (!text.starts_with(beginning)) return false;
  text.remove_prefix(beginning.size());
  return true;
}

void SkipBlanks(std::string_view& text) {
  while (Take(text, " ")) {
  }
}

// Skips blanks and underscores between the parts of a name. True if there are any.
bool SkipGap(std::string_view& text) {
  const std::size_t before = text.size();
  while (Take(text, " ") || Take(text, "_")) {
  }
  return text.size() < before;
}

// Takes an integer with an optional sign from the beginning.
bool TakeInteger(std::string_view& text, int& value) {
  SkipBlanks(text);
  if (text.starts_with('+') && text.size() > 1 && text[1] != '-') text.remove_prefix(1);
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc()) return false;
  text.remove_prefix(static_cast<std::size_t>(rest - text.data()));
  SkipBlanks(text);
  return true;
}

ZernikeTerm Checked(std::string_view whole, ZernikeTerm term) {
  if (IsTerm(term)) return term;
  throw InvalidCoefficientName(NameProblem::kNoSuchTerm, whole);
}

ZernikeTerm TakeTerm(std::string_view whole, std::string_view inner, std::string_view closing) {
  ZernikeTerm term{};
  if (!TakeInteger(inner, term.n) || !Take(inner, ",") || !TakeInteger(inner, term.m) || !Take(inner, closing) ||
      !inner.empty()) {
    throw InvalidCoefficientName(NameProblem::kMalformedTerm, whole);
  }
  return Checked(whole, term);
}

// Parses the rest of a term after its number n: a gap or comma, and the number m.
std::optional<ZernikeTerm> TermBehind(std::string_view n, std::string_view rest) {
  ZernikeTerm term{};
  if (!TakeInteger(n, term.n)) return std::nullopt;
  bool gap = SkipGap(rest);
  if (Take(rest, ",")) {
    gap = true;
    SkipBlanks(rest);
  }
  if (!gap || !TakeInteger(rest, term.m) || !rest.empty()) return std::nullopt;
  return term;
}

// True if the letters after a number name a unit: "um", "(um)", "_waves".
bool IsUnit(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" _-([");
  if (first == std::string_view::npos) return false;
  text.remove_prefix(first);
  text = text.substr(0, text.find_last_not_of(" )]") + 1);
  return ValueOf<Unit>(text).has_value();
}

std::string Numbered(std::size_t number) { return std::string("Z").append(std::to_string(number)); }

}  // namespace

std::optional<CoefficientName> ParseCoefficientName(std::string_view text) {
  const std::string plain = Plain(text);
  std::string_view rest = plain;
  const bool isC = rest.starts_with('c'), isWord = Take(rest, "zernike");
  if (!isWord && !Take(rest, "z") && !Take(rest, "c")) return std::nullopt;
  SkipGap(rest);
  if (Take(rest, "(") || Take(rest, "[")) {
    const std::string_view closing = plain[plain.size() - rest.size() - 1] == '(' ? ")" : "]";
    const bool isNumber = rest.find_first_of("0123456789") == rest.find_first_not_of(" +-");
    // Brackets after a C may contain a unit.
    if (isC && (rest.empty() || !isNumber)) return std::nullopt;
    return TakeTerm(text, rest, closing);
  }
  if (rest.starts_with('-') || rest.starts_with('+') || rest.starts_with('.') || rest.starts_with(',')) {
    const std::size_t digit = rest.find_first_not_of("+-., _");
    if (digit == std::string_view::npos || !IsDigit(rest[digit])) return std::nullopt;
    if (isC && rest.find_first_not_of("+-., _0123456789") != std::string_view::npos) return std::nullopt;
    throw InvalidCoefficientName(NameProblem::kSignedNumber, text);
  }
  const std::string_view digits = rest.substr(0, rest.find_first_not_of("0123456789"));
  const bool hasDigit = rest.find_first_of("0123456789") != std::string_view::npos;
  if (digits.empty() && !(isWord && hasDigit)) return std::nullopt;
  rest.remove_prefix(digits.size());
  if (rest.empty() && !digits.empty()) {
    std::size_t number = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), number).ec == std::errc()) return number;
    throw InvalidCoefficientName(NameProblem::kNumberTooLarge, text);
  }
  if (const auto term = TermBehind(digits, rest)) return Checked(text, *term);
  if (IsUnit(rest)) throw InvalidCoefficientName(NameProblem::kUnitInName, text);
  // Other names also begin with C and a number, such as "C1_visit".
  if (isC && rest.find_first_not_of(" _-+.,;:^/()[]{}0123456789") != std::string_view::npos) return std::nullopt;
  throw InvalidCoefficientName(NameProblem::kMalformedName, text);
}

ZernikeTerm TermNamed(const CoefficientName& name, std::optional<IndexScheme> scheme) {
  if (const auto* term = std::get_if<ZernikeTerm>(&name)) return *term;
  const std::size_t number = std::get<std::size_t>(name);
  if (!scheme || *scheme == IndexScheme::kNamed) throw IndexWithoutScheme(number);
  std::optional<ZernikeTerm> term;
  if (*scheme == IndexScheme::kOsa && number < kMaxTerms) term = Term(number);
  if (*scheme == IndexScheme::kNoll) term = TermOfNoll(number);
  if (*scheme == IndexScheme::kFringe) term = TermOfFringe(number);
  if (!term) {
    const std::size_t first = *scheme == IndexScheme::kOsa ? 0 : 1;
    const std::size_t count = *scheme == IndexScheme::kFringe ? kFringeTerms : kMaxTerms;
    throw IndexNotInScheme(number, *scheme, first, first + count - 1);
  }
  return *term;
}

std::string NameIn(IndexScheme scheme, ZernikeTerm term) {
  switch (scheme) {
    case IndexScheme::kOsa:
      return Numbered(OsaIndex(term));
    case IndexScheme::kNoll:
      return Numbered(NollIndex(term));
    case IndexScheme::kFringe:
      return Numbered(FringeIndex(term).value());
    case IndexScheme::kNamed:
      break;
  }
  return Symbol(term);
}

}  // namespace orvanel::eye
