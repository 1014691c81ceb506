#!/usr/bin/env bash
# Builds the one library of a recipe: build_library.sh NAME PREFIX SOURCES. It is called by build.sh.
#
# A recipe (recipes/NAME.sh) sets
#   source_package   Debian's name of the source package
#   version          the pinned Debian version
#   licence          what we may do with it
# and defines build(), which runs in the unpacked source and installs into $prefix. It may use $triplet, $cc, $cflags,
# $jobs and the two functions below. What was built is recorded in PREFIX/built/NAME as the very last step.
set -euo pipefail

name=$1
prefix=$2
sources=$3
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
triplet=x86_64-w64-mingw32
cc=$triplet-gcc-posix
jobs=${ZV_JOBS:-$(nproc)}
# Sections of their own let the linker leave out what our modules never call.
cflags='-ffunction-sections -fdata-sections'

# shellcheck source=deps/fetch.sh
source "$here/fetch.sh"

# Builds and installs a static library by CMake; the arguments are the library's own options. ZV_CMAKE_DIR names the
# folder of its CMakeLists.txt when that is not the root, ZV_CMAKE_PROCESSOR the processor when the library knows another
# name for it.
cmake_install() {
  cmake -S "${ZV_CMAKE_DIR:-.}" -B zv-build -G Ninja \
    -DCMAKE_SYSTEM_NAME=Windows -DCMAKE_SYSTEM_PROCESSOR="${ZV_CMAKE_PROCESSOR:-AMD64}" \
    -DCMAKE_C_COMPILER="$cc" -DCMAKE_CXX_COMPILER="$triplet-g++-posix" -DCMAKE_RC_COMPILER="$triplet-windres" \
    -DCMAKE_FIND_ROOT_PATH="$prefix" -DCMAKE_FIND_ROOT_PATH_MODE_PROGRAM=NEVER \
    -DCMAKE_FIND_ROOT_PATH_MODE_LIBRARY=ONLY -DCMAKE_FIND_ROOT_PATH_MODE_INCLUDE=ONLY \
    -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=ONLY -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR:STRING=lib \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_C_FLAGS="$cflags" -DCMAKE_CXX_FLAGS="$cflags" -DBUILD_SHARED_LIBS=OFF "$@"
  cmake --build zv-build --parallel "$jobs"
  cmake --install zv-build
}

# Compiles a few C files into a static library and installs it with its headers:
# archive_install LIB.a HEADER... -- SOURCE...
archive_install() {
  local archive=$1 headers=() source
  shift
  while [[ $1 != -- ]]; do
    headers+=("$1")
    shift
  done
  shift
  for source in "$@"; do
    # shellcheck disable=SC2086 # cflags holds several flags
    "$cc" -O2 -DNDEBUG -I. $cflags -c "$source" -o "${source%.c}.o"
  done
  "$triplet-ar" rcs "$archive" "${@/%.c/.o}"
  install -D -m 644 -t "$prefix/lib" "$archive"
  install -D -m 644 -t "$prefix/include" "${headers[@]}"
}

source_package='' version='' licence='' copyright=debian/copyright
# shellcheck source=/dev/null
source "$here/recipes/$name.sh"

work=$prefix/work/$name
rm -rf "$work"
mkdir -p "$work"
cd "$work"
if [[ -n $source_package ]]; then
  version=$(fetch_source "$source_package" "$version" "$sources")
  unpack_source "$source_package" "$version" "$sources" source
  cd source
fi
build
install -D -m 644 "$copyright" "$prefix/share/licences/$name"
rm -rf "$work"
printf '%s %s (%s)\n' "$name" "$version" "$licence" >"$prefix/built/$name"
