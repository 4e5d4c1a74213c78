#!/usr/bin/env bash
# Tests that only Debian packages are fetched, by name, and only by the functions `need` and `unpack` of ./dev. Its
# functions `peers_environment` and `python_environment` install the peers of a benchmark and the tools of the Python
# module, each pinned by its hash.
# Usage: supply.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
status=0
# Everything that runs or configures, by its name or by its first line. This file and its test, which have to spell what
# they look for, are left out; so are build trees.
files=$( { find . -name build -prune -o -name .git -prune -o -type f \( -name '*.sh' -o -name '*.py' -o -name 'CMake*' \
  -o -name '*.cmake' -o -name '*.in' -o -name command -o -name '*.mk' -o -name Makefile -o -name 'Dockerfile*' \
  -o -name '*.toml' -o -name '*.yml' -o -name '*.yaml' \) -print
  find . -name build -prune -o -name .git -prune -o -type f -perm -u+x -print0 | xargs -0r grep -lI '^#!'; } |
  grep -vE '^\./tests/guards/(broken/)?supply\.sh$' | sort -u || true)
[ -n "$files" ] || { echo "no scripts found"; exit 1; }

# lines_of FILE: with their numbers, but those of the functions that may fetch.
lines_of() {
  awk -v file="${1#./}" 'file == "dev" && /^(need|unpack|peers_environment|python_environment)\(\) \{/ {inside = 1}
    !inside {print file ":" NR ":" $0}
    file == "dev" && inside && /^}/ {inside = 0}' "$1"
}
lines=$(while IFS= read -r file; do lines_of "$file"; done <<<"$files")

# refuse WHAT PATTERN: no line has it.
refuse() {
  grep -P "$2" <<<"$lines" || return 0
  echo "The lines above fetch something by $1; name a Debian package in ./dev instead."
  status=1
}

word() { printf '(?<![\\w.-])(?:%s)(?![\\w.-])' "$1"; }
# What these environments install has hashes.
for environment in peers_environment python_environment; do
  installs=$(sed -n "/^$environment() {/,/^}/p" dev)
  if grep 'pip install' <<<"$installs" | grep -v -e '--require-hashes .*-r [$]wanted$'; then
    echo "The line above installs something without a hash, or not from the list of its environment."
    status=1
  fi
done
# A wheel that is built here is installed without a network.
lines=$(grep -vE -e '-m pip (wheel|install) --quiet --no-index --no-deps ' <<<"$lines")
refuse 'a program for downloads' "$(word 'curl|wget2?|aria2c|axel|w3m|lynx|sftp|scp|rsync|ncat|socat|telnet')|/dev/(tcp|udp)/"
refuse 'a version control system' "$(word 'git')[^|;&]*$(word 'clone|submodule|fetch|pull|ls-remote|remote')|$(word 'hg|svn|bzr')"
refuse 'a manager of packages' "$(word 'pip[0-9.]*|pipx|uv|easy_install|ensurepip|poetry|conda|mamba|npm|npx|yarn|pnpm|cargo|rustup')"
refuse 'a manager of packages' "$(word 'conan|vcpkg|gem|cpanm?|brew|snap|flatpak|docker|podman|go (get|install|mod)')"
refuse 'CMake' 'FetchContent|ExternalProject|CPMAddPackage|CPM\.cmake|\b(DOWNLOAD|UPLOAD)\b|\bctest_update\b'
refuse 'Python' '\burllib|\burlopen|\bhttp\.client|\bftplib|\b(import|from) +(requests|httpx|aiohttp|socket)\b'
# A message that tells which packages are missing, in quotes on a line of its own, installs nothing.
lines=$(grep -vE ':[0-9]+: *"[^"]*"[^"]*$' <<<"$lines")
refuse 'Debian packages' \
  "$(word 'apt|apt-get|aptitude|dpkg')[^|;&]*$(word 'install|reinstall|update|upgrade|source|download|build-dep|-i|--install|--unpack')"
exit $status
