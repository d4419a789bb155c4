# shellcheck shell=bash
# 32-bit Wine for the win32 tier, from Debian's i386 packages.
#
# The i386 index of the security suite often fails to download, while the
# amd64 side already holds newer security versions of multi-arch libraries
# that must be the same version on both architectures. When the plain install
# does not resolve, wine32 comes from the main suite alone, and each amd64
# library that its i386 twin needs at the same version is pinned to the main
# suite's version (an upgrade for most, a downgrade for a few).
#
# wine32_setup never fails: when 32-bit Wine cannot be had it leaves the
# reason in $WINE32_REASON_FILE, which scripts/test reports, and removes that
# file once 32-bit Wine is there.

WINE32_LOADER=/usr/lib/wine/wine
# VAGENT_WINE32_PACKAGE names another package to try instead, which is how
# the path without 32-bit Wine can be tried on a machine that has it.
WINE32_PACKAGE=${VAGENT_WINE32_PACKAGE:-wine32:i386}
WINE32_MAIN_SUITE=bookworm
# Rounds of pinning amd64 twins before the main-suite install gives up.
WINE32_PIN_ROUNDS=5

wine32_say() { echo "setup: $*"; }

wine32_installed() {
  [ -x "$WINE32_LOADER" ] &&
    dpkg-query -W -f='${Status}' "$WINE32_PACKAGE" 2>/dev/null | grep -q "install ok installed"
}

wine32_unavailable() {
  mkdir -p "$(dirname "$WINE32_REASON_FILE")"
  echo "$1" >"$WINE32_REASON_FILE"
  wine32_say "no 32-bit Wine: $1; the win32 tier builds its suites without running them"
}

wine32_apt() {
  $WINE32_SUDO env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300 "$@"
}

wine32_add_architecture() {
  if dpkg --print-foreign-architectures | grep -qx i386; then
    return 0
  fi
  $WINE32_SUDO dpkg --add-architecture i386 || return 1
  wine32_say "changed: added the i386 architecture to dpkg"
}

# apt-get update exits non-zero when any index fails, the i386 security one
# included; what did download is still used.
wine32_update_indexes() {
  local log
  log=$(wine32_apt update -qq 2>&1) && return 0
  grep -E '^(E|W): ' <<<"$log" | sed 's/^/setup:   /' | head -4 || true
  wine32_say "some package indexes failed to download; going on with the rest"
}

wine32_installed_versions() {
  dpkg-query -W -f='${db:Status-Abbrev} ${binary:Package} ${Version}\n' 2>/dev/null |
    awk '$1 == "ii" { print $2, $3 }' | sort
}

# Prints which packages were added, upgraded and downgraded between two
# listings of "package version" lines.
wine32_report_changes() {
  local before=$1 after=$2
  local new=() upgraded=() downgraded=()
  local package version old
  declare -A was
  while read -r package version; do was[$package]=$version; done <"$before"
  while read -r package version; do
    old=${was[$package]-}
    if [ -z "$old" ]; then
      new+=("$package=$version")
    elif dpkg --compare-versions "$version" gt "$old"; then
      upgraded+=("$package=$old->$version")
    elif dpkg --compare-versions "$version" lt "$old"; then
      downgraded+=("$package=$old->$version")
    fi
  done <"$after"
  wine32_say "changed: ${#upgraded[@]} upgraded, ${#new[@]} new, ${#downgraded[@]} downgraded"
  [ ${#upgraded[@]} -eq 0 ] || wine32_say "upgraded: ${upgraded[*]}"
  [ ${#downgraded[@]} -eq 0 ] || wine32_say "downgraded: ${downgraded[*]}"
  [ ${#new[@]} -eq 0 ] || wine32_say "new: ${new[*]}"
}

wine32_main_suite_install() {
  wine32_apt install "$@" -y --allow-downgrades --no-install-recommends -t "$WINE32_MAIN_SUITE" \
    -o APT::Get::Upgrade-By-Source-Package=false "$WINE32_PACKAGE" "${WINE32_PINS[@]}"
}

# i386 packages that apt cannot install in the given output because a
# dependency "is not going to be installed".
wine32_blocked_i386() {
  grep -E 'Depends: .*but it is not going to be installed' <<<"$1" |
    sed -E 's/.*Depends: ([^ ]+):i386 .*/\1/;t;d' | sort -u
}

# Adds "name:amd64=version" for each blocked i386 package whose amd64 twin is
# installed at another version than the i386 candidate. Fails when none is.
wine32_pin_twins() {
  local blocked=$1 pinned=1 name candidate current
  for name in $blocked; do
    candidate=$(apt-cache policy "$name:i386" | awk '/Candidate:/ { print $2 }')
    current=$(dpkg-query -W -f='${Version}' "$name:amd64" 2>/dev/null || true)
    if [ -z "$candidate" ] || [ "$candidate" = "(none)" ] || [ -z "$current" ] ||
      [ "$candidate" = "$current" ] || [[ " ${WINE32_PINS[*]} " == *" $name:amd64="* ]]; then
      continue
    fi
    WINE32_PINS+=("$name:amd64=$candidate")
    wine32_say "pinning $name:amd64 to $candidate, the version of its i386 twin"
    pinned=0
  done
  return $pinned
}

# Finds the pins that let the main-suite install resolve, by simulation.
wine32_resolve_main_suite() {
  local round output
  WINE32_PINS=()
  for ((round = 0; round < WINE32_PIN_ROUNDS; round++)); do
    output=$(wine32_main_suite_install -s 2>&1) && return 0
    wine32_pin_twins "$(wine32_blocked_i386 "$output")" || break
  done
  WINE32_LAST_ERROR=$(grep -E '^ *[^ ]+ : Depends:|^E: ' <<<"$output" | head -3 | tr -s ' ' | paste -sd ';' -)
  return 1
}

wine32_install() {
  local before after log
  before=$(mktemp)
  after=$(mktemp)
  wine32_installed_versions >"$before"
  wine32_say "installing $WINE32_PACKAGE"
  if log=$(wine32_apt install -y --no-install-recommends "$WINE32_PACKAGE" 2>&1); then
    wine32_say "installed $WINE32_PACKAGE from the current suites"
  elif wine32_say "the plain install does not resolve; trying the $WINE32_MAIN_SUITE suite alone" &&
    wine32_resolve_main_suite && log=$(wine32_main_suite_install 2>&1); then
    wine32_say "installed $WINE32_PACKAGE from $WINE32_MAIN_SUITE${WINE32_PINS[*]:+ with ${WINE32_PINS[*]}}"
  else
    WINE32_LAST_ERROR=${WINE32_LAST_ERROR:-$(grep -E '^E: ' <<<"$log" | head -2 | paste -sd ';' -)}
  fi
  grep -E '^[0-9]+ upgraded, ' <<<"$log" | sed 's/^/setup: apt: /' || true
  wine32_installed_versions >"$after"
  wine32_report_changes "$before" "$after"
  rm -f "$before" "$after"
}

wine32_setup() {
  WINE32_LAST_ERROR=""
  if wine32_installed; then
    rm -f "$WINE32_REASON_FILE"
    wine32_say "32-bit Wine present ($(dpkg-query -W -f='${Version}' "$WINE32_PACKAGE")), nothing to change"
    return 0
  fi
  WINE32_SUDO=""
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      wine32_unavailable "not root and no sudo to install $WINE32_PACKAGE"
      return 0
    fi
    WINE32_SUDO="sudo"
  fi
  if ! command -v apt-get >/dev/null; then
    wine32_unavailable "no apt-get to install $WINE32_PACKAGE"
    return 0
  fi
  if ! wine32_add_architecture; then
    wine32_unavailable "dpkg cannot add the i386 architecture"
    return 0
  fi
  wine32_update_indexes
  wine32_install
  if wine32_installed; then
    rm -f "$WINE32_REASON_FILE"
  else
    wine32_unavailable "$WINE32_PACKAGE does not install${WINE32_LAST_ERROR:+ ($WINE32_LAST_ERROR)}"
  fi
}
