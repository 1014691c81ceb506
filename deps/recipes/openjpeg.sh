# shellcheck shell=bash disable=SC2034,SC2154
source_package=openjpeg2
version=2.5.0-2+deb12u3
licence=BSD-2-Clause

build() {
  cmake_install -DBUILD_CODEC=OFF -DBUILD_THIRDPARTY=OFF -DBUILD_TESTING=OFF
}
