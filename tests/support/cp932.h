// Converts UTF-8 text to code page 932 by the converter of the system.
#ifndef ORVANEL_TESTS_SUPPORT_CP932_H
#define ORVANEL_TESTS_SUPPORT_CP932_H

#ifdef _WIN32
#include <windows.h>
#else
#include <iconv.h>
#endif

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace orvanel::test {

inline std::string Cp932(std::u8string_view text) {
  std::string input(text.begin(), text.end());
  std::string output(2 * input.size() + 1, '\0');
#ifdef _WIN32
  std::wstring wide(input.size() + 1, L'\0');
  const int characters =
      MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, input.data(), static_cast<int>(input.size()), wide.data(),
                          static_cast<int>(wide.size()));
  BOOL replaced = FALSE;
  const int bytes = WideCharToMultiByte(932, WC_NO_BEST_FIT_CHARS, wide.data(), characters, output.data(),
                                        static_cast<int>(output.size()), nullptr, &replaced);
  const bool faithful = characters > 0 && bytes > 0 && !replaced;
  output.resize(static_cast<std::size_t>(bytes));
#else
  iconv_t converter = iconv_open("CP932", "UTF-8");
  char* from = input.data();
  char* to = output.data();
  std::size_t from_left = input.size();
  std::size_t to_left = output.size();
  const bool faithful = iconv(converter, &from, &from_left, &to, &to_left) == 0;
  iconv_close(converter);
  output.resize(output.size() - to_left);
#endif
  if (!faithful) throw std::runtime_error("no such text in code page 932");
  return output;
}

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_SUPPORT_CP932_H
