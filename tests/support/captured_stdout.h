// Captures what code writes to standard output.
#ifndef ORVANEL_TESTS_SUPPORT_CAPTURED_STDOUT_H
#define ORVANEL_TESTS_SUPPORT_CAPTURED_STDOUT_H

#include <cstdio>
#include <string>

#include "tests/support/redirected_stdout.h"

namespace orvanel::test {

// Runs the action and returns the bytes that it wrote.
template <typename Action>
std::string OutputOf(Action&& action) {
  const RedirectedStdout redirected;
  action();
  std::fflush(stdout);
  return redirected.Written();
}

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_SUPPORT_CAPTURED_STDOUT_H
