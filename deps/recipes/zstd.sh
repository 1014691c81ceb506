# shellcheck shell=bash disable=SC2034,SC2154
source_package=libzstd
version=1.5.4+dfsg2-5
licence=BSD-3-Clause

build() {
  ZV_CMAKE_DIR=build/cmake cmake_install -DZSTD_BUILD_SHARED=OFF -DZSTD_BUILD_PROGRAMS=OFF -DZSTD_BUILD_TESTS=OFF \
    -DZSTD_LEGACY_SUPPORT=OFF -DZSTD_MULTITHREAD_SUPPORT=OFF
}
