#!/usr/bin/env bash
# Tests the guard with a tree whose test is empty or missing from the build.
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"

# shellcheck disable=SC2016
put tree/tests/cli/CMakeLists.txt 'orvanel_tests(x SOURCES
    batch/run_test.cpp
    $<$<NOT:$<BOOL:${WIN32}>>:hosts_test.cpp>)'
put tree/tests/cli/batch/run_test.cpp 'TEST(Run, Runs) { EXPECT_EQ(1 + 1, 2); }'
put tree/tests/cli/hosts_test.cpp 'TEST_P(Hosts, Runs) { EXPECT_EQ(1 + 1, 2); }'
keeps 'tests that are built' tree
: >tree/tests/cli/batch/run_test.cpp
breaks 'an empty file of tests' 'tests/cli/batch/run_test.cpp holds no test' tree
put tree/tests/cli/batch/run_test.cpp '// TEST(Run, Runs) {}'
breaks 'a test in a comment' 'tests/cli/batch/run_test.cpp holds no test' tree
put tree/tests/cli/batch/run_test.cpp 'TEST(Run, Runs) {}'
put tree/tests/cli/run_test.cpp 'TEST(Run, Runs) {}'
breaks 'a test that is not built, beside one of its name that is' 'tests/cli/run_test.cpp is in no CMakeLists.txt' tree
rm tree/tests/cli/run_test.cpp
put tree/tests/cli/CMakeLists.txt '# orvanel_tests(x SOURCES batch/run_test.cpp hosts_test.cpp)'
breaks 'tests in a comment of CMake' 'batch/run_test.cpp is in no CMakeLists.txt' tree
mkdir -p bare/tests
breaks 'a tree without tests' 'no file of tests is here' bare
finish
