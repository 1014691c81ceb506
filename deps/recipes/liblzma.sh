# shellcheck shell=bash disable=SC2034,SC2154
# The library is in the public domain; the programs of the package are not ours to ship and are not built.
source_package=xz-utils
version=5.4.1-1+deb12u1
licence='public domain'

build() {
  cmake_install
}
