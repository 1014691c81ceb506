#!/usr/bin/env bash
# Cross-builds the third-party libraries, static, from Debian's source packages into a cached prefix:
#
#   deps/build.sh              build what is missing, then make the prefix the current one
#   deps/build.sh NAME...      build only these libraries (those that they need must be there)
#   deps/build.sh --list       print the libraries in the order in which they are built
#   deps/build.sh --prefix     print the prefix
#
# The prefix is ${XDG_CACHE_HOME:-~/.cache}/zvfiledlg/deps-<hash>, the hash being that of the recipes (comments aside), of
# build_library.sh and of the compiler's version, so that a change of any of them builds a new one. The link "deps" beside
# it names the current prefix and is set only when every library is in it; the file "complete" in it says the same.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
cache=${XDG_CACHE_HOME:-$HOME/.cache}/zvfiledlg
compiler=x86_64-w64-mingw32-gcc-posix

# A library stands below those that it uses.
libraries=(zlib libdeflate libpng libjpeg-turbo zstd liblzma giflib openjpeg lcms2 libwebp libtiff graphicsmagick)

say() { printf 'deps: %s\n' "$*"; }
die() {
  printf 'deps: %s\n' "$*" >&2
  exit 1
}

require_tools() {
  local tool package
  while read -r tool package; do
    command -v "$tool" >/dev/null || die "$tool is missing; type: sudo apt-get install $package"
  done <<END
$compiler g++-mingw-w64-x86-64-posix
cmake cmake
ninja ninja-build
make make
nasm nasm
dpkg-source dpkg-dev
flock util-linux
END
}

prefix_path() {
  local hash
  hash=$({
    sed -e '/^ *#/d' -e '/^ *$/d' "$here/build_library.sh" "$here"/recipes/*.sh
    "$compiler" -dumpfullversion
  } | sha256sum | cut -c1-16)
  printf '%s/deps-%s\n' "$cache" "$hash"
}

build_library() {
  local name=$1 log=$prefix/logs/$1.log started=$SECONDS
  if [[ -f $prefix/built/$name ]]; then
    return
  fi
  [[ -f $here/recipes/$name.sh ]] || die "there is no library $name; type: $here/build.sh --list"
  say "building $name"
  mkdir -p "$prefix/logs" "$prefix/built"
  if ! "$here/build_library.sh" "$name" "$prefix" "$cache/sources" >"$log" 2>&1; then
    tail -n 25 "$log" >&2
    die "$name could not be built, its log ends above; to try again type: $here/build.sh"
  fi
  say "$(head -n 1 "$prefix/built/$name") built in $((SECONDS - started)) s"
}

is_complete() {
  [[ -f $prefix/complete && $(readlink "$cache/deps") == "$prefix" ]]
}

make_current() {
  cat "$prefix"/built/* >"$prefix/complete"
  ln -sfnT "$prefix" "$cache/deps.new"
  mv -fT "$cache/deps.new" "$cache/deps"
}

require_tools
prefix=$(prefix_path)
case ${1:-} in
  --list)
    printf '%s\n' "${libraries[@]}"
    exit
    ;;
  --prefix)
    printf '%s\n' "$prefix"
    exit
    ;;
  --*) die "unknown option $1; type: $here/build.sh [NAME...], --list or --prefix" ;;
esac

if is_complete; then
  exit
fi
mkdir -p "$cache"
exec 9>"$cache/deps.lock"
flock -n 9 || {
  say "waiting for another build of the libraries"
  flock 9
}

if (($# > 0)); then
  for name in "$@"; do
    build_library "$name"
  done
  exit
fi
for name in "${libraries[@]}"; do
  build_library "$name"
done
make_current
say "all libraries are in $prefix"
