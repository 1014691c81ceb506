# Language level, output folders, warnings and sanitizers for our own targets.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

# Linked privately by every target of ours and by none of the libraries we depend on.
add_library(zv_settings INTERFACE)
target_include_directories(zv_settings INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_options(zv_settings INTERFACE -Wall -Wextra -Wpedantic -Werror -Wno-missing-field-initializers
                       $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual -Wno-cast-function-type>)
if(WIN32)
  target_compile_definitions(zv_settings INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX STRICT
                             WINVER=0x0601 _WIN32_WINNT=0x0601 _WIN32_IE=0x0800)
  target_link_options(zv_settings INTERFACE -static -static-libgcc -static-libstdc++)
else()
  target_compile_options(zv_settings INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(zv_settings INTERFACE -fsanitize=address,undefined)
  if(ZV_FUZZ)
    target_compile_options(zv_settings INTERFACE -fsanitize=fuzzer-no-link)
  endif()
endif()
