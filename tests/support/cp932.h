// UTF-8 text in the bytes of code page 932, by the C library's own converter.
#ifndef ORVANEL_TESTS_SUPPORT_CP932_H
#define ORVANEL_TESTS_SUPPORT_CP932_H

#include <iconv.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace orvanel::test {

inline std::string Cp932(std::u8string_view text) {
  iconv_t converter = iconv_open("CP932", "UTF-8");
  std::string input(text.begin(), text.end());
  std::string output(2 * input.size() + 1, '\0');
  char* from = input.data();
  char* to = output.data();
  std::size_t from_left = input.size();
  std::size_t to_left = output.size();
  const std::size_t irreversible = iconv(converter, &from, &from_left, &to, &to_left);
  iconv_close(converter);
  if (irreversible != 0) throw std::runtime_error("no such text in code page 932");
  output.resize(output.size() - to_left);
  return output;
}

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_SUPPORT_CP932_H
