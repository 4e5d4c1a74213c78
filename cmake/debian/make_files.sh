#!/usr/bin/env bash
# Writes the additional files of a Debian package: copyright and the two changelogs, with the same bytes each time.
# Usage: make_files.sh SOURCE_FOLDER NOTICES VERSION MAINTAINER FOLDER
set -euo pipefail
source=$1 notices=$2 version=$3 maintainer=$4 folder=$5
mkdir -p "$folder"
cat "$source/LICENSE" <(echo) "$notices" >"$folder/copyright"
gzip -9n <"$source/CHANGELOG.md" >"$folder/changelog.gz"
# The date of the last change, or that of SOURCE_DATE_EPOCH.
seconds=${SOURCE_DATE_EPOCH:-$(stat -c %Y "$source/CHANGELOG.md")}
gzip -9n >"$folder/changelog.Debian.gz" <<TEXT
orvanel ($version) unstable; urgency=medium

  * Version ${version%-*}; changelog.gz tells what is new.

 -- $maintainer  $(LC_ALL=C date -u -R -d "@$seconds")
TEXT
