# How tests of the four floors become CTest entries: doctest programs run on a
# private Windows machine each, files of node tests by themselves.

# Debian keeps doctest's one header beside the C library's own headers, which a
# cross build must not see: give it a folder of its own.
find_file(ORVANTA_DOCTEST_HEADER doctest/doctest.h PATHS /usr/include NO_DEFAULT_PATH REQUIRED
  NO_CMAKE_FIND_ROOT_PATH)
configure_file("${ORVANTA_DOCTEST_HEADER}" "${CMAKE_BINARY_DIR}/test_headers/doctest/doctest.h" COPYONLY)

add_library(orvanta_doctest INTERFACE)
target_include_directories(orvanta_doctest SYSTEM INTERFACE "${CMAKE_BINARY_DIR}/test_headers")
target_include_directories(orvanta_doctest INTERFACE "${CMAKE_SOURCE_DIR}/tests")
target_link_libraries(orvanta_doctest INTERFACE orvanta_options)

# What tests find in their environment; the names of things that the build has made.
set(ORVANTA_TEST_ENVIRONMENT
  "ORVANTA_PROGRAM=$<TARGET_FILE:OrvantaInstaller>"
  "ORVANTA_PAGE_FILE=${CMAKE_BINARY_DIR}/generated/page.html"
  "ORVANTA_SAMPLE_PRODUCTS=${CMAKE_BINARY_DIR}/sample_products"
  "ORVANTA_SCHTASKS=$<TARGET_FILE:schtasks>"
  "ORVANTA_BROWSER=$<TARGET_FILE:recorder_browser>"
  "ORVANTA_MACHINE_REPORT=$<TARGET_FILE:machine_report>"
  "ORVANTA_WEBVIEW2_STANDIN_DIR=$<TARGET_FILE_DIR:webview2_runtime_standin>")

set(ORVANTA_WITH_MACHINE "${CMAKE_SOURCE_DIR}/tests/support/with_machine")

# A program with the property ORVANTA_NEEDS_DISPLAY gets a screen of its own.
function(orvanta_add_doctest NAME LABEL PROGRAM)
  get_target_property(needs_display ${PROGRAM} ORVANTA_NEEDS_DISPLAY)
  set(launcher "${ORVANTA_WITH_MACHINE}")
  if(needs_display)
    list(PREPEND launcher "${CMAKE_SOURCE_DIR}/tests/support/with_display")
  endif()
  add_test(NAME "${NAME}" COMMAND ${launcher} "$<TARGET_FILE:${PROGRAM}>" ${ARGN})
  set_tests_properties("${NAME}" PROPERTIES
    LABELS "${LABEL}"
    # A filter that matches nothing must not pass for a test.
    FAIL_REGULAR_EXPRESSION "test cases: +0 "
    ENVIRONMENT "${ORVANTA_TEST_ENVIRONMENT}")
endfunction()

# One test per file: for pure functions, which leave nothing behind.
function(orvanta_add_doctest_files LABEL PROGRAM)
  foreach(file IN LISTS ARGN)
    get_filename_component(name "${file}" NAME_WE)
    string(REGEX REPLACE "_test$" "" name "${name}")
    orvanta_add_doctest("${LABEL}.${name}" ${LABEL} ${PROGRAM} "--source-file=*${file}")
  endforeach()
endfunction()

# One test per case, so that every case has a machine that nobody else has touched.
function(orvanta_add_doctest_cases LABEL PROGRAM)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ARGN})
  foreach(file IN LISTS ARGN)
    get_filename_component(prefix "${file}" NAME_WE)
    string(REGEX REPLACE "_test$" "" prefix "${prefix}")
    file(STRINGS "${file}" lines REGEX "^TEST_CASE")
    foreach(line IN LISTS lines)
      if(NOT line MATCHES "^TEST_CASE(_FIXTURE\\([A-Za-z]+, |\\()\"([^\",*]+)\"\\)")
        message(FATAL_ERROR "${file}: name the case on the same line, without quotes, commas and asterisks: ${line}")
      endif()
      set(case "${CMAKE_MATCH_2}")
      orvanta_add_doctest("${LABEL}.${prefix}: ${case}" ${LABEL} ${PROGRAM}
        "--source-file=*${file}" "--test-case=${case}")
    endforeach()
  endforeach()
endfunction()

# A file of tests for node's test runner. Node is looked for when the test runs: the build may have been configured
# before anybody needed it. Such a file runs several machines or pages at a time, so it takes the place of two tests.
function(orvanta_add_node_tests LABEL TIMEOUT_SECONDS)
  foreach(file IN LISTS ARGN)
    get_filename_component(name "${file}" NAME)
    string(REPLACE ".test.mjs" "" name "${name}")
    add_test(NAME "${LABEL}.${name}"
      COMMAND /usr/bin/env node "${CMAKE_SOURCE_DIR}/tests/support/run_node_tests.mjs" "${file}")
    set_tests_properties("${LABEL}.${name}" PROPERTIES
      LABELS "${LABEL}"
      TIMEOUT ${TIMEOUT_SECONDS}
      PROCESSORS 2
      ENVIRONMENT "${ORVANTA_TEST_ENVIRONMENT}")
  endforeach()
endfunction()
