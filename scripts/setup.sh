#!/usr/bin/env bash
# Makes a Debian 12 machine ready and builds: scripts/setup.sh [--host]
#
# Installs the packages of packages.txt that are missing, builds the third-party libraries into the cache, configures,
# builds all modules, programs and tests. With --host also the portable parts natively, under sanitizers and for the
# fuzzers. What is there and up to date is left alone.
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

installed_packages() {
  dpkg-query -W -f '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null | sed -n 's/^installed //p'
}

missing_packages() {
  local wanted
  mapfile -t wanted < <(sed -e 's/#.*//' -e '/^ *$/d' "$root/scripts/packages.txt" | cut -d' ' -f1)
  # An unknown package is no line at all in the answer, so the installed ones are taken away from the wanted ones.
  comm -23 <(printf '%s\n' "${wanted[@]}" | sort -u) <(installed_packages "${wanted[@]}" | sort -u)
}

install_packages() {
  local missing sudo=()
  command -v dpkg-query >/dev/null || die "this is not Debian; install by hand what scripts/packages.txt names"
  missing=$(missing_packages | paste -sd ' ')
  if [[ -z $missing ]]; then
    return
  fi
  say "installing $missing"
  if [[ $(id -u) != 0 ]]; then
    command -v sudo >/dev/null || die "packages are missing; type as root: apt-get install $missing"
    sudo=(sudo)
  fi
  "${sudo[@]}" apt-get -q update || die "apt-get update failed; check the network, then type: apt-get update"
  # shellcheck disable=SC2086 # missing holds several names
  "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y --no-install-recommends install $missing ||
    die "packages are missing; type as root: apt-get install $missing"
}

configure_and_build() {
  local preset=$1 folder=$2
  if [[ ! -f $folder/build.ninja ]]; then
    say "configuring $preset"
    (cd "$root" && cmake --preset "$preset") || die "configuring failed; to see why again type: cmake --preset $preset"
  fi
  say "building $preset"
  cmake --build "$folder" || die "the $preset build failed; to see it again type: ninja -C $folder -k 0"
}

with_host=no
case ${1:-} in
  --host) with_host=yes ;;
  '') ;;
  *) die "unknown option $1; type: scripts/setup.sh [--host]" ;;
esac

install_packages
"$root/deps/build.sh"
configure_and_build cross "$build"
if [[ $with_host == yes ]]; then
  configure_and_build host "$host_build"
  if [[ -f $root/tests/fuzz/CMakeLists.txt ]]; then
    configure_and_build fuzz "$fuzz_build"
  fi
fi
