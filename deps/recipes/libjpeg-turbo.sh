# shellcheck shell=bash disable=SC2034,SC2154
source_package=libjpeg-turbo
version=1:2.1.5-2
licence='IJG and BSD-3-Clause and Zlib'

build() {
  cmake_install -DENABLE_SHARED=OFF -DENABLE_STATIC=ON -DWITH_TURBOJPEG=OFF -DWITH_JPEG8=OFF -DREQUIRE_SIMD=ON
}
