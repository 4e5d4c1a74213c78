#!/bin/sh
# Runs a Windows program under Wine, with a Windows of the build tree's own.
# Usage: wine.sh BUILD_TREE/bin/PROGRAM [ARGUMENT]...
# For a program that stands elsewhere, ORVANEL_WINE_PREFIX names the folder of that Windows.
set -eu
WINEPREFIX=${ORVANEL_WINE_PREFIX:-$(dirname "$(dirname "$(realpath "$1")")")/wine}
# Neither messages, nor a display, nor the menus of a desktop.
export WINEPREFIX WINEDEBUG=-all WINEDLLOVERRIDES=winemenubuilder.exe=d
unset DISPLAY
# It is made by whoever comes first; several tests may start at a time.
made=$WINEPREFIX/made
if [ ! -e "$made" ]; then
  mkdir -p "$WINEPREFIX"
  (
    flock 9
    # What stays behind in the background must not keep the lock.
    [ -e "$made" ] || wine wineboot --init 9>&- >"$WINEPREFIX/wineboot.log" 2>&1
    touch "$made"
  ) 9>"$WINEPREFIX/lock"
fi
exec wine "$@"
