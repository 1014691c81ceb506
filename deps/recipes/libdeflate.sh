# shellcheck shell=bash disable=SC2034,SC2154
source_package=libdeflate
version=1.14-1
licence=MIT

build() {
  # This version has no CMake files yet, and its makefile derives its tools' names from the compiler's, which has a suffix.
  archive_install libdeflate.a libdeflate.h -- lib/*.c lib/x86/cpu_features.c
}
