// What code writes to standard output, caught at the file descriptor so that it holds whichever way it was written.
#ifndef ORVANEL_TESTS_SUPPORT_CAPTURED_STDOUT_H
#define ORVANEL_TESTS_SUPPORT_CAPTURED_STDOUT_H

#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <string>

namespace orvanel::test {

// Runs the action and returns the bytes that it wrote.
template <typename Action>
std::string OutputOf(Action&& action) {
  std::fflush(stdout);
  const int terminal = dup(STDOUT_FILENO);
  std::FILE* const file = std::tmpfile();
  dup2(fileno(file), STDOUT_FILENO);
  action();
  std::fflush(stdout);
  dup2(terminal, STDOUT_FILENO);
  close(terminal);

  std::string output(static_cast<std::size_t>(lseek(fileno(file), 0, SEEK_END)), '\0');
  std::rewind(file);
  output.resize(std::fread(output.data(), 1, output.size(), file));
  std::fclose(file);
  return output;
}

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_SUPPORT_CAPTURED_STDOUT_H
