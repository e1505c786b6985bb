# Shared by ./captivo and ./check, which source it: installs what is missing, configures and builds.
# shellcheck shell=bash

captivo_root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '%s\n' "$*" >&2; }
die() {
  say "$@"
  exit 1
}

# Names of packages.txt that are not installed, one a line.
missing_packages() {
  local line name
  while IFS= read -r line || [[ -n $line ]]; do
    name=${line%%#*}
    name=${name//[[:space:]]/}
    [[ -n $name ]] || continue
    dpkg-query -W -f='${db:Status-Status}\n' "$name" 2>/dev/null | grep -qx installed || printf '%s\n' "$name"
  done <"$captivo_root/cmake/packages.txt"
}

# The command that precedes what needs the rights of the system: nothing for root, sudo for others.
find_installer() {
  if [[ $(id -u) -eq 0 ]]; then
    installer=(env DEBIAN_FRONTEND=noninteractive)
  elif command -v sudo >/dev/null 2>&1; then
    installer=(sudo env DEBIAN_FRONTEND=noninteractive)
  else
    return 1
  fi
}

install_missing() {
  if ! command -v dpkg-query >/dev/null 2>&1 || ! command -v apt-get >/dev/null 2>&1; then
    say "This is no Debian system, so nothing is installed here. What Captivo needs is listed in cmake/packages.txt."
    return 0
  fi
  local missing
  mapfile -t missing < <(missing_packages)
  ((${#missing[@]})) || return 0

  say "Missing: ${missing[*]}"
  local installer=()
  find_installer || die "They can be installed only by root or with sudo. As root: apt-get install ${missing[*]}"
  say "Installing…"
  "${installer[@]}" apt-get update -q >&2 || say "The package lists could not be renewed; trying with those at hand."
  "${installer[@]}" apt-get install -q -y --no-install-recommends "${missing[@]}" >&2 || true

  mapfile -t missing < <(missing_packages)
  ((${#missing[@]})) || return 0
  say "These packages could not be installed: ${missing[*]}"
  die "Without them Captivo cannot be built. Is there a network?"
}

# Compilers at once: one for each processor, fewer where memory is short.
count_jobs() {
  local processors memory jobs
  processors=$(nproc 2>/dev/null || echo 1)
  memory=$(awk '/^MemAvailable:/ { print int($2 / 1048576) }' /proc/meminfo 2>/dev/null || echo 1)
  jobs=$processors
  ((${memory:-1} >= jobs)) || jobs=${memory:-1}
  ((jobs >= 1)) || jobs=1
  printf '%s\n' "$jobs"
}

# A terminal or pipe of any language; the toolkit and the translations want UTF-8.
use_utf8() {
  local charmap
  charmap=$(locale charmap 2>/dev/null || true)
  [[ $charmap == UTF-8 ]] || export LC_ALL=C.UTF-8
}

# configure PRESET: once; later changes of the build files are seen by the build itself.
configure() {
  local preset=$1 folder="$captivo_root/build/$1" log
  local fresh=()
  if [[ -f $folder/CMakeCache.txt ]]; then
    # A clone that was moved or copied brings a cache that names its old place.
    grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$captivo_root" "$folder/CMakeCache.txt" || fresh=(--fresh)
    [[ ! -f $folder/build.ninja || ${#fresh[@]} -gt 0 ]] || return 0
  fi
  mkdir -p "$folder"
  log="$folder/configure.log"
  say "Configuring ($preset)…"
  if ! (cd -- "$captivo_root" && cmake --preset "$preset" "${fresh[@]}") >"$log" 2>&1; then
    cat "$log" >&2
    die "Captivo could not be configured; the reason is above and in $log."
  fi
}

# build PRESET [TARGET...]: what changed.
build() {
  local preset=$1
  shift
  local targets=()
  (($# == 0)) || targets=(--target "$@")
  if [[ -z ${HOME:-} || ! -w ${HOME:-} ]]; then
    export CCACHE_DIR="$captivo_root/build/ccache"
  fi
  cmake --build "$captivo_root/build/$preset" --parallel "$(count_jobs)" "${targets[@]}" >&2 ||
    die "Captivo could not be built; the reason is above."
}
