# shellcheck shell=bash disable=SC2034,SC2154
# Debian ships this one cross-built; a copy beside the others keeps the import library of its DLL out of sight.
source_package=''
version=1.2.13+dfsg-1
licence=Zlib
copyright=/usr/share/doc/libz-mingw-w64-dev/copyright

build() {
  version=$(dpkg-query -W -f '${Version}' libz-mingw-w64-dev) ||
    fetch_fail 'zlib is missing; type: sudo apt-get install libz-mingw-w64-dev'
  install -D -m 644 -t "$prefix/lib" "/usr/$triplet/lib/libz.a"
  install -D -m 644 -t "$prefix/include" "/usr/$triplet/include/zlib.h" "/usr/$triplet/include/zconf.h"
}
