// Breaks text into lines by the widths of the glyphs.
#include "drawing/canvas/text_layout.h"

#include <sstream>
#include <utility>

#include "drawing/canvas/font.h"

namespace orvanel::drawing {
namespace {

// The longest prefix of whole characters that fits with `ending` after it, in bytes. Bisection, since a file may
// contain a text of any length.
std::size_t Fitting(const std::string& text, const std::string& ending, const TextStyle& style, double width) {
  const auto whole = [&text](std::size_t bytes) {
    while (bytes > 0 && bytes < text.size() && (static_cast<unsigned char>(text[bytes]) & 0xc0) == 0x80) --bytes;
    return bytes;
  };
  std::size_t fits = 0;
  std::size_t tooLong = text.size() + 1;
  while (tooLong - fits > 1) {
    const std::size_t middle = fits + (tooLong - fits) / 2;
    (TextWidth(text.substr(0, whole(middle)) + ending, style) <= width ? fits : tooLong) = middle;
  }
  return whole(fits);
}

// Pieces of a word no wider than a line, each at least one character.
std::vector<std::string> Pieces(std::string word, const TextStyle& style, double width) {
  std::vector<std::string> pieces;
  while (TextWidth(word, style) > width) {
    std::size_t bytes = Fitting(word, "", style, width);
    if (bytes == 0) {
      do ++bytes;
      while (bytes < word.size() && (static_cast<unsigned char>(word[bytes]) & 0xc0) == 0x80);
    }
    pieces.push_back(word.substr(0, bytes));
    word.erase(0, bytes);
  }
  if (!word.empty()) pieces.push_back(std::move(word));
  return pieces;
}

}  // namespace

double TextWidth(const std::string& text, const TextStyle& style) { return TextLength(text, style.size, style.bold); }

std::vector<std::string> Wrapped(const std::string& text, const TextStyle& style, double width, std::size_t most) {
  std::vector<std::string> lines(1);
  std::istringstream words(text.substr(0, Fitting(text, "", style, (static_cast<double>(most) + 1.0) * width)));
  for (std::string word; words >> word;) {
    for (const std::string& piece : Pieces(word, style, width)) {
      const std::string longer = lines.back().empty() ? piece : lines.back() + " " + piece;
      if (lines.back().empty() || TextWidth(longer, style) <= width) {
        lines.back() = longer;
      } else {
        lines.push_back(piece);
      }
    }
  }
  if (lines.size() > most) {
    const std::string cut = lines[most - 1] + " " + lines[most];
    lines.resize(most);
    lines.back() = cut.substr(0, Fitting(cut, "\u2026", style, width)) + "\u2026";
  }
  return lines;
}

TextStyle Fitted(const std::string& text, TextStyle style, double width) {
  const double usual = TextWidth(text, style);
  if (usual > width) style.size *= width / usual;
  return style;
}

}  // namespace orvanel::drawing
