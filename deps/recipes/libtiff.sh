# shellcheck shell=bash disable=SC2034,SC2154
source_package=tiff
version=4.5.0-6+deb12u4
licence=libtiff

build() {
  # JBIG stays off: that library is under the GPL.
  cmake_install -Dtiff-tools=OFF -Dtiff-tests=OFF -Dtiff-contrib=OFF -Dtiff-docs=OFF -Dcxx=OFF \
    -Djpeg=ON -Dzlib=ON -Dlibdeflate=ON -Dzstd=ON -Dlzma=ON -Dwebp=ON -Djbig=OFF -Dlerc=OFF \
    -DLIBLZMA_HAS_AUTO_DECODER=1 -DLIBLZMA_HAS_EASY_ENCODER=1 -DLIBLZMA_HAS_LZMA_PRESET=1 \
    -DCMAKE_C_FLAGS="$cflags -DLZMA_API_STATIC"
  local codec
  for codec in JPEG ZIP LIBDEFLATE ZSTD LZMA WEBP; do
    grep -q "^#define ${codec}_SUPPORT" zv-build/libtiff/tiffconf.h zv-build/libtiff/tif_config.h ||
      fetch_fail "libtiff was configured without $codec"
  done
}
