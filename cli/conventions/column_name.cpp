// Parsing of coefficient names, letter by letter.
#include "cli/conventions/column_name.h"

#include <charconv>

#include "cli/error.h"
#include "cli/number_text.h"

namespace orvanel::cli {
namespace {

void SkipBlanks(std::string_view& text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
}

// Takes an integer from the front.
bool TakeInteger(std::string_view& text, int& value) {
  SkipBlanks(text);
  if (text.starts_with('+') && text.size() > 1 && text[1] != '-') text.remove_prefix(1);
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc()) return false;
  text.remove_prefix(static_cast<std::size_t>(rest - text.data()));
  SkipBlanks(text);
  return true;
}

bool Take(std::string_view& text, char c) {
  if (!text.starts_with(c)) return false;
  text.remove_prefix(1);
  return true;
}

ZernikeTerm TakeTerm(std::string_view whole, std::string_view inner, char closing) {
  ZernikeTerm term{};
  if (!TakeInteger(inner, term.n) || !Take(inner, ',') || !TakeInteger(inner, term.m) || !Take(inner, closing) ||
      !inner.empty()) {
    throw Error(Quoted(whole) +
                " looks like a coefficient but is none; write Z(2,0) or c[2,-2] with radial order and frequency, in "
                "quotes where commas separate the columns");
  }
  if (!IsTerm(term)) {
    throw Error(Quoted(whole) + " is no Zernike term; write the radial order n (0 to " + std::to_string(kLargestOrder) +
                ") first and then m, from -n to n in steps of 2");
  }
  return term;
}

std::string Numbered(std::size_t number) { return std::string("Z").append(std::to_string(number)); }

}  // namespace

std::optional<CoefficientName> ParseCoefficientName(std::string_view text) {
  if (text.size() < 2 || std::string_view("ZzCc").find(text[0]) == std::string_view::npos) return std::nullopt;
  std::string_view inner = text.substr(1);
  if (Take(inner, '(')) return TakeTerm(text, inner, ')');
  if (Take(inner, '[')) return TakeTerm(text, inner, ']');
  if (inner[0] < '0' || inner[0] > '9') return std::nullopt;
  std::size_t number = 0;
  const auto [rest, error] = std::from_chars(inner.data(), inner.data() + inner.size(), number);
  if (error != std::errc() || rest != inner.data() + inner.size()) {
    throw Error(Quoted(text) + " looks like a coefficient but is none; write Z4, Z(2,0) or c[2,-2]");
  }
  return number;
}

ZernikeTerm TermNamed(const CoefficientName& name, std::optional<Order> order) {
  if (const auto* term = std::get_if<ZernikeTerm>(&name)) return *term;
  const std::size_t number = std::get<std::size_t>(name);
  const std::string text = Numbered(number);
  if (!order || *order == Order::kNamed) {
    throw Error(text + " is a number without an order to count in; state the order as osa, noll or fringe, or write " +
                "the term as Z(2,0)");
  }
  std::optional<ZernikeTerm> term;
  if (*order == Order::kOsa && number < kMostTerms) term = Term(number);
  if (*order == Order::kNoll) term = TermOfNoll(number);
  if (*order == Order::kFringe) term = TermOfFringe(number);
  if (!term) {
    const std::size_t first = *order == Order::kOsa ? 0 : 1;
    const std::size_t count = *order == Order::kFringe ? kFringeTerms : kMostTerms;
    throw Error(text + " is not in the order " + std::string(Word(*order)) + ", whose numbers are " +
                std::to_string(first) + " to " + std::to_string(first + count - 1));
  }
  return *term;
}

std::string NameIn(Order order, ZernikeTerm term) {
  switch (order) {
    case Order::kOsa:
      return Numbered(OsaIndex(term));
    case Order::kNoll:
      return Numbered(NollIndex(term));
    case Order::kFringe:
      return Numbered(FringeIndex(term).value());
    case Order::kNamed:
      break;
  }
  return Symbol(term);
}

}  // namespace orvanel::cli
