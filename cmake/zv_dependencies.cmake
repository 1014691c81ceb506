# Finds the third-party libraries in the prefix that deps/ builds, and GoogleTest in Debian's source package.
set(ZV_CACHE "$ENV{XDG_CACHE_HOME}")
if(NOT ZV_CACHE)
  set(ZV_CACHE "$ENV{HOME}/.cache")
endif()
set(ZV_DEPS_PREFIX "${ZV_CACHE}/zvfiledlg/deps" CACHE PATH "Prefix of the cross-built third-party libraries")

add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
