#!/usr/bin/env bash
# Tests the guard with two headers that compile alone, and with lines that need another language or a missing include.
# Usage: headers_alone.sh CC CXX
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"

c='int f(int x);'
cxx=$'#include <vector>\ninline std::vector<int> g() { return {1}; }'
put include/orvanel/orvanel.h "$c"
put include/orvanel/matrix.h "$cxx"
keeps 'headers that compile alone' "$1" "$2" include
put include/orvanel/orvanel.h 'bool f(int x);'
breaks 'a word of C++' 'orvanel.h is no c99' "$1" "$2" include
put include/orvanel/orvanel.h 'long long f(int x);'
breaks 'a type of C99' 'orvanel.h is no c++98' "$1" "$2" include
put include/orvanel/orvanel.h "$c"
put include/orvanel/matrix.h 'inline std::vector<int> g() { return {1}; }'
breaks 'an include that is missing' 'matrix.h is no c++17' "$1" "$2" include
put include/orvanel/matrix.h $'#include <concepts>\ntemplate <std::integral T> T g(T x);'
breaks 'a word of C++20' 'matrix.h is no c++17' "$1" "$2" include
mkdir bare
breaks 'a folder without headers' 'is no' "$1" "$2" bare
finish
