#!/usr/bin/env bash
# Tests the guard with a folder of the maximum number of files, and of one more.
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"
mkdir -p tree/{include,base,matrix,optics,eye,targets,models,interface,metrics,evaluation,files,c_interface,drawing,cli,bench}
for ((i = 0; i < 25; ++i)); do
  put "tree/eye/file$i.cpp" x
  put "tree/eye/conventions/file$i.cpp" x
done
keeps 'folders with 25 files' tree
put tree/eye/conventions/one_more.h x
breaks 'a folder with 26 files' 'eye/conventions has 26 files' tree
finish
