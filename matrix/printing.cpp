// Writes numbers to standard output.
#include "matrix/printing.h"

#include <charconv>
#include <limits>
#include <string_view>

#include "base/standard_output.h"

namespace orvanel {
namespace {

constexpr int kWidth = 10;
constexpr int kDecimals = 4;
constexpr int kLongest = 1 + (std::numeric_limits<double>::max_exponent10 + 1) + 1 + kDecimals;  // sign, digits, point

}  // namespace

void PrintNumber(double number) {
  // The blanks of the widest padding are before the digits; the write starts with as many of them as needed.
  char text[kWidth + kLongest] = {' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' '};
  char* const digits = text + kWidth;
  const char* const end = std::to_chars(digits, digits + kLongest, number, std::chars_format::fixed, kDecimals).ptr;
  const char* const start = end - digits < kWidth ? end - kWidth : digits;
  WriteOutput(std::string_view(start, end));
}

}  // namespace orvanel
