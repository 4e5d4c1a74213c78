// A hash of bytes, FNV-1a with 64 bits: against mistakes, not against malice.
#ifndef ORVANEL_BASE_FNV1A_H
#define ORVANEL_BASE_FNV1A_H

#include <cstdint>
#include <string>
#include <string_view>

namespace orvanel {

// Two texts of one length that differ in a single byte never have the same hash: each step is a bijection.
class Fnv1a {
 public:
  void Add(std::string_view bytes) {
    for (const char byte : bytes) state_ = (state_ ^ static_cast<unsigned char>(byte)) * 0x100000001b3U;
  }

  // 16 hexadecimal digits.
  std::string Text() const {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (int shift = 60; shift >= 0; shift -= 4) text += kDigits[state_ >> shift & 0xfU];
    return text;
  }

 private:
  std::uint64_t state_ = 0xcbf29ce484222325U;
};

}  // namespace orvanel

#endif  // ORVANEL_BASE_FNV1A_H
