# shellcheck shell=bash disable=SC2034 # the variables are for the scripts that source this
# What every script starts with: strict mode, the folders, and how to speak.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$root/build
host_build=$root/build-host
fuzz_build=$root/build-fuzz

# The compiler cache lies with our other cached things, and a second clone of the sources profits from it.
export CCACHE_DIR=${CCACHE_DIR:-${XDG_CACHE_HOME:-$HOME/.cache}/zvfiledlg/ccache}
export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$root}
export CCACHE_NOHASHDIR=1

say() { printf '==> %s\n' "$*"; }
die() {
  printf 'error: %s\n' "$*" >&2
  exit 1
}
