# shellcheck shell=bash disable=SC2034,SC2154
source_package=giflib
version=5.2.1-2.5+deb12u1
licence=MIT

build() {
  # Its makefile is for Unix alone.
  archive_install libgif.a gif_lib.h -- \
    dgif_lib.c egif_lib.c gifalloc.c gif_err.c gif_font.c gif_hash.c quantize.c openbsd-reallocarray.c
}
