# The libraries that the codecs stand on, as imported targets zvdep::zlib, deflate, png, jpeg, tiff, gif, openjpeg, lcms2,
# webp, webpdemux and magick, and GoogleTest from Debian's source package.
#
# For Windows they are static and come from the prefix that deps/build.sh makes; each target names what it needs in its
# turn, so that the link order is right. On the host they are Debian's own shared libraries.

if(ZV_HOST)
  find_package(PkgConfig REQUIRED)

  # zv_host_library(name pkg-config-module debian-package)
  function(zv_host_library name module package)
    pkg_check_modules(${name} QUIET IMPORTED_TARGET ${module})
    if(NOT ${name}_FOUND)
      message(FATAL_ERROR "${module} is missing; type: sudo apt-get install ${package}")
    endif()
    add_library(zvdep::${name} ALIAS PkgConfig::${name})
  endfunction()

  zv_host_library(zlib zlib zlib1g-dev)
  zv_host_library(deflate libdeflate libdeflate-dev)
  zv_host_library(png libpng libpng-dev)
  zv_host_library(jpeg libjpeg libjpeg62-turbo-dev)
  zv_host_library(tiff libtiff-4 libtiff-dev)
  zv_host_library(openjpeg libopenjp2 libopenjp2-7-dev)
  zv_host_library(lcms2 lcms2 liblcms2-dev)
  zv_host_library(webp libwebp libwebp-dev)
  zv_host_library(webpdemux libwebpdemux libwebp-dev)
  zv_host_library(magick GraphicsMagick libgraphicsmagick1-dev)

  # giflib has no pkg-config file.
  find_library(ZV_GIF_LIBRARY gif)
  find_path(ZV_GIF_INCLUDE gif_lib.h)
  if(NOT ZV_GIF_LIBRARY OR NOT ZV_GIF_INCLUDE)
    message(FATAL_ERROR "giflib is missing; type: sudo apt-get install libgif-dev")
  endif()
  add_library(zvdep::gif UNKNOWN IMPORTED)
  set_target_properties(zvdep::gif PROPERTIES IMPORTED_LOCATION ${ZV_GIF_LIBRARY}
                                              INTERFACE_INCLUDE_DIRECTORIES ${ZV_GIF_INCLUDE})
else()
  set(ZV_CACHE "$ENV{XDG_CACHE_HOME}")
  if(NOT ZV_CACHE)
    set(ZV_CACHE "$ENV{HOME}/.cache")
  endif()
  set(ZV_DEPS_PREFIX "${ZV_CACHE}/zvfiledlg/deps" CACHE PATH "Prefix of the cross-built third-party libraries")
  if(NOT EXISTS ${ZV_DEPS_PREFIX}/complete)
    message(FATAL_ERROR "No third-party libraries in ${ZV_DEPS_PREFIX}; type: ${CMAKE_SOURCE_DIR}/deps/build.sh")
  endif()

  # zv_prefix_library(name archive [INCLUDE folder...] [DEFINE symbol...] [LINK target-or-system-library...])
  function(zv_prefix_library name archive)
    cmake_parse_arguments(arg "" "" "INCLUDE;DEFINE;LINK" ${ARGN})
    if(NOT EXISTS ${ZV_DEPS_PREFIX}/lib/${archive})
      message(FATAL_ERROR "${ZV_DEPS_PREFIX} has no ${archive}; type: ${CMAKE_SOURCE_DIR}/deps/build.sh")
    endif()
    set(includes ${ZV_DEPS_PREFIX}/include)
    foreach(folder IN LISTS arg_INCLUDE)
      list(APPEND includes ${ZV_DEPS_PREFIX}/include/${folder})
    endforeach()
    add_library(zvdep::${name} STATIC IMPORTED GLOBAL)
    set_target_properties(zvdep::${name} PROPERTIES
      IMPORTED_LOCATION ${ZV_DEPS_PREFIX}/lib/${archive}
      INTERFACE_INCLUDE_DIRECTORIES "${includes}"
      INTERFACE_COMPILE_DEFINITIONS "${arg_DEFINE}"
      INTERFACE_LINK_LIBRARIES "${arg_LINK}")
  endfunction()

  zv_prefix_library(zlib libz.a)
  zv_prefix_library(deflate libdeflate.a)
  zv_prefix_library(png libpng16.a LINK zvdep::zlib)
  zv_prefix_library(jpeg libjpeg.a)
  zv_prefix_library(zstd libzstd.a)
  zv_prefix_library(lzma liblzma.a DEFINE LZMA_API_STATIC)
  zv_prefix_library(gif libgif.a)
  zv_prefix_library(openjpeg libopenjp2.a INCLUDE openjpeg-2.5 DEFINE OPJ_STATIC)
  zv_prefix_library(lcms2 liblcms2.a)
  zv_prefix_library(webp libwebp.a)
  zv_prefix_library(webpmux libwebpmux.a LINK zvdep::webp)
  zv_prefix_library(webpdemux libwebpdemux.a LINK zvdep::webp)
  zv_prefix_library(tiff libtiff.a LINK zvdep::webp zvdep::zstd zvdep::lzma zvdep::jpeg zvdep::deflate zvdep::zlib)
  # Its headers ask for _LIB and _MT to know that they are used statically.
  zv_prefix_library(magick libGraphicsMagick.a INCLUDE GraphicsMagick DEFINE _LIB _MT
                    LINK zvdep::tiff zvdep::webpmux zvdep::webp zvdep::png zvdep::jpeg zvdep::lcms2 zvdep::lzma zvdep::zstd
                         zvdep::zlib gdi32 user32 ws2_32)
endif()

if(NOT EXISTS /usr/src/googletest/CMakeLists.txt)
  message(FATAL_ERROR "GoogleTest's sources are missing; type: sudo apt-get install googletest")
endif()
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
