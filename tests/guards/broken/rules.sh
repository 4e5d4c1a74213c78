# Defines functions for tests of guards: a folder to work in, and checks of the guard's findings. Sourced; $guard is the
# script in the folder above that has the name of the test.
# shellcheck shell=bash
set -euo pipefail
guard=$(cd "$(dirname "${BASH_SOURCE[1]}")/.." && pwd)/$(basename "${BASH_SOURCE[1]}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
failures=0

# keeps WHAT ARGUMENT...: the guard passes.
keeps() {
  local what=$1 said
  shift
  said=$("$guard" "$@" 2>&1) && return
  echo "refused though it keeps the rule, $what: $said"
  failures=1
}

# breaks WHAT PHRASE ARGUMENT...: the guard fails, and says the phrase.
breaks() {
  local what=$1 phrase=$2 said
  shift 2
  if said=$("$guard" "$@" 2>&1); then
    echo "passed though it breaks the rule: $what"
    failures=1
  elif [[ $said != *"$phrase"* ]]; then
    echo "refused for another reason, $what: $said"
    failures=1
  fi
}

# put FILE TEXT: the file, with its folders.
put() {
  mkdir -p "$(dirname "$1")"
  printf '%s\n' "$2" >"$1"
}

# finish: the test's verdict.
finish() { exit $failures; }
