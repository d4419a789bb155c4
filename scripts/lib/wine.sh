# shellcheck shell=bash
# Wine as the Windows tiers' tests need it: a prefix made once, and a fresh
# wineserver whose services are up before ctest starts, so that none of them
# holds ctest's output pipe open.
#
#   wine_prepare [win64|win32]   before a tier's ctest (win64 when not named)
#   wine_finish                  after it
#
# Each tier has a prefix of its own: the win64 tier's is WINEPREFIX as found
# when this file is sourced (build/wineprefix by default), the win32 tier's a
# 32-bit prefix beside it (build/wineprefix32), so that neither tier sees what
# the other left in its registry or files. wine_prepare exports WINEPREFIX for
# the tier that it prepares.
WINE64=/usr/lib/wine/wine64
WINE32=/usr/lib/wine/wine
WINESERVER=/usr/lib/wine/wineserver
# The project's own prefixes, so that a run never disturbs another Wine user.
export WINEPREFIX=${WINEPREFIX:-$PWD/build/wineprefix}
WINE_PREFIX64=$WINEPREFIX
WINE_PREFIX32=${WINE_PREFIX32:-$(dirname "$WINE_PREFIX64")/wineprefix32}

wine_prepare() {
  local tier=${1:-win64} loader arch
  case "$tier" in
  win64) loader=$WINE64 arch=win64 WINEPREFIX=$WINE_PREFIX64 ;;
  win32) loader=$WINE32 arch=win32 WINEPREFIX=$WINE_PREFIX32 ;;
  *)
    echo "wine_prepare: unknown tier $tier (win64 or win32)" >&2
    return 1
    ;;
  esac
  export WINEPREFIX WINEDEBUG=-all
  if [ ! -f "$WINEPREFIX/system.reg" ]; then
    WINEARCH=$arch "$loader" wineboot -i </dev/null >/dev/null 2>&1 || true
  fi
  "$WINESERVER" -k 2>/dev/null || true
  "$WINESERVER" -w 2>/dev/null || true
  "$WINESERVER" -p
  "$loader" wineboot </dev/null >/dev/null 2>&1 || true
}

wine_finish() {
  "$WINESERVER" -k 2>/dev/null || true
}
