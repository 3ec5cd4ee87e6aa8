# How tests of the four floors become CTest entries: on Linux doctest programs run
# on a private Windows machine each, on Windows as they are; files of node tests by
# themselves.

# Debian keeps doctest's one header beside the C library's own headers, which a
# cross build must not see: give it a folder of its own.
if(CMAKE_CROSSCOMPILING)
  find_file(ORVANTA_DOCTEST_HEADER doctest/doctest.h PATHS /usr/include NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
else()
  find_file(ORVANTA_DOCTEST_HEADER doctest/doctest.h)
endif()
if(NOT ORVANTA_DOCTEST_HEADER)
  message(FATAL_ERROR "The unit tests need doctest: Debian's doctest-dev, MSYS2's mingw-w64-x86_64-doctest, or its "
    "one header named by -DORVANTA_DOCTEST_HEADER=FILE. -DORVANTA_TESTS=OFF builds the program alone.")
endif()
configure_file("${ORVANTA_DOCTEST_HEADER}" "${CMAKE_BINARY_DIR}/test_headers/doctest/doctest.h" COPYONLY)

add_library(orvanta_doctest INTERFACE)
target_include_directories(orvanta_doctest SYSTEM INTERFACE "${CMAKE_BINARY_DIR}/test_headers")
target_include_directories(orvanta_doctest INTERFACE "${CMAKE_SOURCE_DIR}/tests")
target_link_libraries(orvanta_doctest INTERFACE orvanta_options)
# Its own locks and thread-local values need std::mutex; our cases check on one thread.
target_compile_definitions(orvanta_doctest INTERFACE DOCTEST_CONFIG_NO_MULTITHREADING)
# Nobody waits for a test's own code, but for its compilation: what a test has for itself is not optimized.
if(NOT MSVC)
  target_compile_options(orvanta_doctest INTERFACE -O0)
endif()

if(NOT ORVANTA_MACHINE_TESTS)
  function(orvanta_add_doctest NAME LABEL PROGRAM)
    add_test(NAME "${NAME}" COMMAND ${PROGRAM} ${ARGN})
    set_tests_properties("${NAME}" PROPERTIES LABELS "${LABEL}" FAIL_REGULAR_EXPRESSION "test cases: +0 ")
  endfunction()
  return()
endif()

# What tests find in their environment; the names of things that the build has made.
set(ORVANTA_TEST_ENVIRONMENT
  "ORVANTA_VERSION=${PROJECT_VERSION}"
  "ORVANTA_PROGRAM=$<TARGET_FILE:OrvantaInstaller>"
  "ORVANTA_PAGE_FILE=${CMAKE_BINARY_DIR}/generated/page.html"
  "ORVANTA_SAMPLE_PRODUCTS=${CMAKE_BINARY_DIR}/sample_products"
  "ORVANTA_SCHTASKS=$<TARGET_FILE:schtasks>"
  "ORVANTA_BROWSER=$<TARGET_FILE:recorder_browser>"
  "ORVANTA_WITHOUT_RIGHTS=$<TARGET_FILE:without_rights>"
  "ORVANTA_MACHINE_REPORT=$<TARGET_FILE:machine_report>"
  "ORVANTA_KIT=${CMAKE_BINARY_DIR}/kit"
  "ORVANTA_WEBVIEW2_STANDIN_DIR=$<TARGET_FILE_DIR:webview2_runtime_standin>")

set(ORVANTA_WITH_MACHINE "${CMAKE_SOURCE_DIR}/tests/support/with_machine")
set(ORVANTA_ON_ONE_PROCESSOR "${CMAKE_SOURCE_DIR}/tests/support/on_one_processor")

# Tests of what happens at the same time: they have every processor.
function(orvanta_on_all_processors)
  set_tests_properties(${ARGN} PROPERTIES RESOURCE_GROUPS "")
endfunction()

# A line "Fixed behaviour: ..." in a file of tests says that a file or a case of it holds on to how something is done,
# and why. The test then has the label "fixed" as well.
function(orvanta_label_fixed NAME FILE)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${FILE}")
  file(STRINGS "${FILE}" lines REGEX "^// Fixed behaviour: " LIMIT_COUNT 1)
  if(lines)
    set_property(TEST "${NAME}" APPEND PROPERTY LABELS fixed)
  endif()
endfunction()

# A doctest program, or what ARGN chooses of it, on a machine of its own. A program with the property
# ORVANTA_NEEDS_DISPLAY gets a screen of its own as well.
function(orvanta_add_doctest NAME LABEL PROGRAM)
  get_target_property(needs_display ${PROGRAM} ORVANTA_NEEDS_DISPLAY)
  set(launcher "${ORVANTA_WITH_MACHINE}")
  if(needs_display)
    list(PREPEND launcher "${CMAKE_SOURCE_DIR}/tests/support/with_display")
  endif()
  add_test(NAME "${NAME}"
    COMMAND "${ORVANTA_ON_ONE_PROCESSOR}" "${CMAKE_SOURCE_DIR}/tests/support/run_doctest" ${launcher}
      "$<TARGET_FILE:${PROGRAM}>" ${ARGN})
  set_tests_properties("${NAME}" PROPERTIES
    LABELS "${LABEL}"
    RESOURCE_GROUPS processors:1
    # A filter that matches nothing must not pass for a test.
    FAIL_REGULAR_EXPRESSION "test cases: +0 "
    ENVIRONMENT "${ORVANTA_TEST_ENVIRONMENT}")
endfunction()

# One test and one machine per file: starting a machine takes longer than most files.
function(orvanta_add_doctest_files LABEL PROGRAM)
  foreach(file IN LISTS ARGN)
    get_filename_component(name "${file}" NAME_WE)
    string(REGEX REPLACE "_test$" "" name "${name}")
    orvanta_add_doctest("${LABEL}.${name}" ${LABEL} ${PROGRAM} "--source-file=*/${file}")
    orvanta_label_fixed("${LABEL}.${name}" "${CMAKE_CURRENT_SOURCE_DIR}/${file}")
  endforeach()
endfunction()

# The COST of a test is its place in the order of a run: the longest first, so that none is still at work when all
# others have ended. What takes seconds (most of the machine floor) comes last and fills the gaps.

# A file of tests for node's test runner. Node is looked for when the test runs: the build may have been configured
# before anybody needed it. Such a file runs several machines or pages at a time, so it takes the place of two tests.
function(orvanta_add_node_tests LABEL TIMEOUT_SECONDS)
  foreach(file IN LISTS ARGN)
    get_filename_component(name "${file}" NAME)
    string(REPLACE ".test.mjs" "" name "${name}")
    add_test(NAME "${LABEL}.${name}"
      COMMAND "${ORVANTA_ON_ONE_PROCESSOR}" /usr/bin/env node "${CMAKE_SOURCE_DIR}/tests/support/run_node_tests.mjs"
        "${file}")
    set_tests_properties("${LABEL}.${name}" PROPERTIES
      LABELS "${LABEL}"
      TIMEOUT ${TIMEOUT_SECONDS}
      COST ${TIMEOUT_SECONDS}
      PROCESSORS 2
      RESOURCE_GROUPS processors:2
      # run_node_tests.mjs says so where this system can run none of a file's tests.
      SKIP_RETURN_CODE 77
      ENVIRONMENT "${ORVANTA_TEST_ENVIRONMENT}")
    orvanta_label_fixed("${LABEL}.${name}" "${file}")
  endforeach()
endfunction()
