# shellcheck shell=bash disable=SC2034,SC2154
# Of the package, only the library itself is MIT: the plug-ins beside it are under the GPL and are not built.
source_package=lcms2
version=2.14-2+deb12u1
licence=MIT

build() {
  ./configure --host="$triplet" --prefix="$prefix" --disable-shared --enable-static \
    --without-jpeg --without-tiff --without-zlib --without-threads \
    CC="$cc" CFLAGS="-O2 -DNDEBUG $cflags"
  make -C src -j"$jobs" install
  make -C include install
}
