#!/usr/bin/env bash
# Tests the guard with long sentences and listed words, in documents, in comments, and in text that is not checked.
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"

# The guard reads its lists from its own folder, so a copy gets lists for the test.
mkdir lists
cp "${guard%.sh}.py" lists/
guard=$PWD/lists/prose.py
put lists/prose_swaps.txt $'# words\nat fault -> invalid\nafresh|anew -> again'
put lists/prose_scope.txt $'*.md\nsources'
fifteen='one two three four five six seven eight nine ten eleven twelve thirteen fourteen fifteen'
thirty="$fifteen $fifteen"

# document TEXT; source_file TEXT; script TEXT: the tree with this text in a document, a C++ file, a script.
tree() {
  rm -rf tree
  put tree/README.md 'A plain sentence.'
  put tree/sources/a.cpp '// Does a thing.'
}
document() { tree; put tree/README.md "$1"; }
source_file() { tree; put tree/sources/a.cpp "$1"; }
script() { tree; put tree/sources/a.sh "$1"; }

document "$thirty."
keeps 'a sentence of thirty words' tree
document "$fifteen. ${fifteen^}."
keeps 'two sentences' tree
document "$thirty"$'\nand one.'
breaks 'a sentence of thirty-two words on two lines' 'README.md:1: 32 words, at most 30: one two' tree
document $'Short.\n\nFirst.\nShort. '"${thirty^} more."
breaks 'a long sentence behind short ones' 'README.md:4: 31 words' tree
document "- $fifteen"$'\n- '"$fifteen"$'\n- one'
keeps 'items of a list, each by itself' tree
document "- $fifteen"$'\n  '"$thirty"
breaks 'an item on two lines' 'README.md:1: 45 words' tree
document "a \`$thirty\` b [$fifteen](at-fault.md) c | = ^ * d"
keeps 'code, a link and signs' tree
document $'Text:\n\n    '"$thirty one"$'\n\n```\n'"$thirty one"$'\n```\n\n| '"$thirty one"$' |\n# '"$thirty one"
keeps 'blocks of code, a table and a heading' tree

document 'The row is At fault.'
breaks 'a word of the list' "README.md:1: 'At fault', write 'invalid': The row is At fault." tree
document $'The row is at\nfault.'
breaks 'words on two lines' "'at fault', write 'invalid'" tree
# shellcheck disable=SC2016  # backquotes of Markdown
document 'A `row at fault`, "begin anew" and a flat faultline.'
keeps 'words in code, in quotation marks and within others' tree

source_file $'// Reads.\nint a = 1;  // at fault\n'
breaks 'a comment behind code' "sources/a.cpp:2: 'at fault'" tree
source_file $'/* Reads.\n *\n * Computed afresh. */\nint a;'
breaks 'a comment of C' "sources/a.cpp:3: 'afresh'" tree
source_file $'// Reads.\nconst char* text = "at fault // anew";  // fine'
keeps 'words in a string' tree
source_file "// $fifteen"$'\n// '"$fifteen"$'\n// one\nint a;'
breaks 'a long comment' 'sources/a.cpp:1: 31 words' tree
source_file "// $fifteen:"$'\n//   a  '"$fifteen"$'\n//   b  '"$fifteen"$'\nint a;'
keeps 'parameters, each by itself' tree
source_file "// $fifteen"$'\nint a;\n// '"$fifteen"$'\nint b;  // one\n// two'
keeps 'comments with code between' tree

script $'#!/bin/sh\n# Computes anew.\necho "# at fault"'
breaks 'a comment of a script' "sources/a.sh:2: 'anew'" tree
script $'#!/bin/sh\necho "# at fault" \'# anew\' a#afresh'
keeps 'words in strings of a script' tree
script $'cat <<\'TEXT\'\n  a        one row\n           at fault\nTEXT'
breaks 'a help text' "sources/a.sh:2: 'at fault'" tree

tree
put lists/prose_scope.txt 'gone'
breaks 'a folder that is gone' 'nothing is named gone' tree
put lists/prose_scope.txt 'empty.md'
put tree/empty.md ''
breaks 'a scope without sentences' 'no sentence found' tree
finish
