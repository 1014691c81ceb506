# Checks of the sources themselves, as tests beside the others.
if(NOT ZV_HOST)
  add_test(NAME format_check COMMAND ${CMAKE_SOURCE_DIR}/scripts/check_format.sh)
  set_tests_properties(format_check PROPERTIES SKIP_RETURN_CODE 77 LABELS lint TIMEOUT 300)
endif()
