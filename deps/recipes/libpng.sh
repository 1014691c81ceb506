# shellcheck shell=bash disable=SC2034,SC2154
source_package=libpng1.6
version=1.6.39-2+deb12u5
licence=libpng-2.0

build() {
  # Its SSE2 row filters are there only for a processor of this name.
  ZV_CMAKE_PROCESSOR=x86_64 cmake_install -DPNG_SHARED=OFF -DPNG_STATIC=ON -DPNG_TESTS=OFF -DPNG_INTEL_SSE=on
}
