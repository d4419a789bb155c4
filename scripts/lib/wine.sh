# shellcheck shell=bash
# Wine as the Windows tiers' tests need it: a prefix made once, and a fresh
# wineserver whose services are up before ctest starts, so that none of them
# holds ctest's output pipe open.
WINE64=/usr/lib/wine/wine64
WINESERVER=/usr/lib/wine/wineserver
# The project's own prefix, so that a run never disturbs another Wine user.
export WINEPREFIX=${WINEPREFIX:-$PWD/build/wineprefix}

wine_prepare() {
  export WINEDEBUG=-all
  if [ ! -f "$WINEPREFIX/system.reg" ]; then
    "$WINE64" wineboot -i </dev/null >/dev/null 2>&1 || true
  fi
  "$WINESERVER" -k 2>/dev/null || true
  "$WINESERVER" -w 2>/dev/null || true
  "$WINESERVER" -p
  "$WINE64" wineboot </dev/null >/dev/null 2>&1 || true
}

wine_finish() {
  "$WINESERVER" -k 2>/dev/null || true
}
