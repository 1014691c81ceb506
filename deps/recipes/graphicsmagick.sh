# shellcheck shell=bash disable=SC2034,SC2154
# The long tail of read-only formats. What has a codec of its own elsewhere in this prefix is left to that, but JPEG, PNG,
# TIFF and WebP stay on, since formats of the long tail carry such streams.
source_package=graphicsmagick
version=1.4+really1.3.40-4+deb12u1
licence='GraphicsMagick (MIT style)'

build() {
  # LIBS: what its test of a static libtiff does not know to be needed.
  ./configure --host="$triplet" --build="$(./config/config.guess)" --prefix="$prefix" --disable-shared --enable-static \
    --with-quantum-depth=16 --disable-openmp --disable-installed --disable-dependency-tracking \
    --without-modules --without-x --without-perl --without-magick-plus-plus --without-gs --without-xml \
    --without-wmf --without-ttf --without-jp2 --without-fpx --without-heif --without-jxl --without-bzlib --without-jbig \
    --without-trio CC="$cc" CFLAGS="-O2 -DNDEBUG $cflags" CPPFLAGS="-I$prefix/include -DLZMA_API_STATIC" \
    LDFLAGS="-L$prefix/lib -static" LIBS='-lwebp -ldeflate'
  local delegate
  for delegate in JPEG PNG TIFF WEBP LCMS LZMA ZLIB ZSTD; do
    grep -q "^#define Has$delegate 1" magick/magick_config.h || fetch_fail "GraphicsMagick was configured without $delegate"
  done
  local library=magick/libGraphicsMagick.la
  make -j"$jobs" lib_LTLIBRARIES="$library" "$library"
  make lib_LTLIBRARIES="$library" install-libLTLIBRARIES install-magickincHEADERS magick-install-data-local
}
