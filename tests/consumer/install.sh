#!/usr/bin/env bash
# Installs a build into an empty prefix, and moves it if there is a third argument.
# Usage: install.sh BUILD_FOLDER PREFIX [LATER_PREFIX]
set -euo pipefail
rm -rf "${@:2}"
cmake --install "$1" --prefix "$2" >/dev/null
[ $# -lt 3 ] || mv "$2" "$3"
