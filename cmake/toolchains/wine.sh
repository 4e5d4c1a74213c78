#!/bin/sh
# Runs a Windows program under Wine, with a Wine prefix in the build tree.
# Usage: wine.sh BUILD_TREE/bin/PROGRAM [ARGUMENT]...
# For a program in another folder, ORVANEL_WINE_PREFIX names the folder of the Wine prefix.
set -eu
WINEPREFIX=${ORVANEL_WINE_PREFIX:-$(dirname "$(dirname "$(realpath "$1")")")/wine}
# No messages, no display and no desktop menus.
export WINEPREFIX WINEDEBUG=-all WINEDLLOVERRIDES=winemenubuilder.exe=d
unset DISPLAY
mkdir -p "$WINEPREFIX"
# Wine's server stays for a minute after its last program. Otherwise a program that starts while the server ends may fail.
# The first program starts Wine's services, which keep its output open: so it is an empty one. The command fails if a
# server is running.
if wineserver -p60 </dev/null >/dev/null 2>&1 && [ -e "$WINEPREFIX/made" ]; then
  wine cmd /c exit </dev/null >/dev/null 2>&1 || true
fi
# The first test creates the prefix; several tests may start at the same time.
made=$WINEPREFIX/made
if [ ! -e "$made" ]; then
  (
    flock 9
    # Background processes that remain must not keep the lock.
    [ -e "$made" ] || wine wineboot --init 9>&- >"$WINEPREFIX/wineboot.log" 2>&1
    touch "$made"
  ) 9>"$WINEPREFIX/lock"
fi
exec wine "$@"
