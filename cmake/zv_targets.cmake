# The kinds of target that this project has. Every folder's CMakeLists.txt uses these and nothing of its own.

# zv_add_static(name SOURCES a.cpp b.cpp [LINK lib...])
function(zv_add_static name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${arg_SOURCES})
  target_link_libraries(${name} PUBLIC zv_settings ${arg_LINK})
endfunction()

# zv_add_dll(name SOURCES a.cpp a.rc [DEF file.def] [DESCRIPTION text] [LINK lib...])
# DESCRIPTION gives the module a version resource with that text.
# The symbol <NAME>_BUILD is defined while the module itself is compiled, so that its header exports. On the host the
# module is a static library, linked straight into the tests.
function(zv_add_dll name)
  cmake_parse_arguments(arg "" "DEF;DESCRIPTION" "SOURCES;LINK" ${ARGN})
  string(TOUPPER ${name} upper)
  if(WIN32)
    if(arg_DESCRIPTION)
      set(module_name ${name})
      set(module_description "${arg_DESCRIPTION}")
      configure_file(${CMAKE_SOURCE_DIR}/cmake/version.rc.in ${CMAKE_CURRENT_BINARY_DIR}/${name}_version.rc @ONLY)
      list(APPEND arg_SOURCES ${CMAKE_CURRENT_BINARY_DIR}/${name}_version.rc)
    endif()
    add_library(${name} SHARED ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES PREFIX "" IMPORT_PREFIX "lib")
    if(arg_DEF)
      target_sources(${name} PRIVATE ${arg_DEF})
      set_target_properties(${name} PROPERTIES LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${arg_DEF})
    endif()
  else()
    list(FILTER arg_SOURCES EXCLUDE REGEX "\\.rc$")
    add_library(${name} STATIC ${arg_SOURCES})
  endif()
  target_compile_definitions(${name} PRIVATE ${upper}_BUILD)
  target_link_libraries(${name} PRIVATE zv_settings ${arg_LINK})
endfunction()

# zv_add_program(name SOURCES ... [LINK ...] [GUI])
function(zv_add_program name)
  cmake_parse_arguments(arg "GUI" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE zv_settings ${arg_LINK})
  if(WIN32 AND arg_GUI)
    target_link_options(${name} PRIVATE -mwindows -municode)
  endif()
endfunction()

# One GoogleTest program a file; the CTest entry has the file's name. Unit tests need no window. What they test is optimised as it
# is shipped; the tests themselves only so far that compiling them stays quick.
function(zv_add_unit_test name)
  cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LINK" ${ARGN})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 300)
  endif()
  zv_add_program(${name} SOURCES ${arg_SOURCES} LINK ${arg_LINK} GTest::gmock GTest::gtest GTest::gtest_main)
  target_compile_options(${name} PRIVATE -O1)
  add_test(NAME ${name} COMMAND ${name} WORKING_DIRECTORY ${CMAKE_BINARY_DIR})
  set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS unit)
  zv_test_needs_desk(${name})
endfunction()

# As a unit test, but it opens windows and so needs a display. Focus being one per display, run these through test.sh or one after
# the other.
function(zv_add_dialog_test name)
  zv_add_unit_test(${name} ${ARGN})
  set_tests_properties(${name} PROPERTIES LABELS dialog)
endfunction()

# Lets the test have one of the desks of scripts/desks.sh to itself.
function(zv_test_needs_desk name)
  if(WIN32)
    set_tests_properties(${name} PROPERTIES RESOURCE_GROUPS desks:1)
  endif()
endfunction()

# A libFuzzer program. Its test makes RUNS inputs out of what stands in fuzz/<name> of the build folder; a crash, a leak, 15
# seconds, an allocation of 256 MB or 2 GB in all fail it. The seed is fixed, so that the same program meets much the same inputs
# and a failure says something about the change; new ground is found by longer runs by hand, with the options of the test and
# -max_total_time=600 in place of -runs.
function(zv_add_fuzzer name)
  cmake_parse_arguments(arg "" "RUNS" "SOURCES;LINK" ${ARGN})
  zv_add_program(${name} SOURCES ${arg_SOURCES} LINK ${arg_LINK})
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  set(inputs ${CMAKE_BINARY_DIR}/fuzz/${name})
  file(MAKE_DIRECTORY ${inputs})
  add_test(NAME ${name} COMMAND ${name} -runs=${arg_RUNS} -seed=1 -timeout=15 -rss_limit_mb=2048 -malloc_limit_mb=256
                                -artifact_prefix=${inputs}/ ${inputs})
  set_tests_properties(${name} PROPERTIES LABELS fuzz TIMEOUT 300)
endfunction()
