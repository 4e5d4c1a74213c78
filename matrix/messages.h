// Declares the messages for sizes that do not match: in Japanese, in the bytes of code page 932.
#ifndef ORVANEL_MATRIX_MESSAGES_H
#define ORVANEL_MATRIX_MESSAGES_H

#include <initializer_list>
#include <span>
#include <string_view>

namespace orvanel {

enum class Text {
  kVectorProduct,
  kVectorLeft,
  kVectorRight,
  kVectorSum,
  kVectorCompound,
  kVectorThis,
  kVectorOperand,
  kMatrixProduct,
  kMatrixLeft,
  kMatrixRight,
  kMatrixSum,
  kMatrixDifference,
  kMatrixPlusAssign,
  kMatrixThis,
  kMatrixOperand,
  kMatrixMinusAssign,
  kMatrixQuotient,
  kCast,
  kCastOperand,
  kInverse,
  kNotSquare,
  kInverseByCofactors,
  kNotRegular,
  kDeterminant,
  kTrace,
  kHouseholder,
  kNotOneRow,
  kTridiagonal,
  kFormNotSquare,
  kEigen,
};

// One text twice: as UTF-8 for readers of the source, and as the bytes that are written. Each "%d" is a placeholder for
// a number.
struct Wording {
  Text text;
  std::u8string_view readable;
  std::string_view bytes;
};

// All messages, in the order of Text.
std::span<const Wording> Wordings();

// Writes the text to stdout with its numbers filled in. Unlike printf, which may read a format as characters of the
// locale's encoding, it handles bytes only.
void Say(Text text, std::initializer_list<int> numbers = {});

}  // namespace orvanel

#endif  // ORVANEL_MATRIX_MESSAGES_H
