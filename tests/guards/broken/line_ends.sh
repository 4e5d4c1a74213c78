#!/usr/bin/env bash
# Tests the guard with attributes that lack a line, and with a source that has carriage returns.
# Usage: line_ends.sh
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"
put tree/.gitattributes $'* text=auto eol=lf\ntests/cli/cases/** -text\ntests/fuzz/corpus/** -text'
put tree/a.cpp 'int a;'
put tree/tests/cli/cases/a/stdout.txt $'one\r'
keeps 'lines that end as they should' tree
put tree/b.cpp $'int b;\r'
breaks 'a carriage return' 'b.cpp' tree
rm tree/b.cpp
put tree/.gitattributes '* text=auto eol=lf'
breaks 'cases that git may change' "lacks 'tests/cli/cases" tree
finish
