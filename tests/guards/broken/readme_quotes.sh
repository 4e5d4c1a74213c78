#!/usr/bin/env bash
# Tests the guard with a README whose example or output has changed.
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"

put tree/README.md $'```c\nint x = 1;\n```\n\n    1 of 1'
put tree/examples/x.c $'int before;\nint x = 1;\nint after;'
put tree/examples/x.cpp 'int main() {}'
put tree/examples/x.output '    1 of 1'
keeps 'a README that quotes its example' tree
put tree/examples/x.c 'int x = 2;'
breaks 'an example that has changed' 'not in an example: int x = 1;' tree
put tree/examples/x.c 'int x = 1;'
put tree/examples/x.output '    2 of 2'
breaks 'an output that has changed' 'not in the README: examples/x.output' tree
put tree/README.md '    2 of 2'
breaks 'a README without code' 'the README quotes nothing' tree
finish
