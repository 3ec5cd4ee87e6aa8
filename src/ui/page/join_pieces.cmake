# Turns the page's pieces into C++ constants, and joins them into one HTML file
# for the tests and the preview. Needs nothing but CMake:
#
#   cmake -D HEADER=page_pieces.h -D HTML=page.html -P join_pieces.cmake
#
# FOLDER names another folder with a pieces.cmake of its own. @PROJECT_VERSION@ in
# a piece becomes the version that the project has in its CMakeLists.txt.

# The program reserves this many characters for the whole page.
set(page_capacity 32000)
# In bytes of its file. A piece that comes near it should become two.
set(piece_limit 16000)
# Visual C++ takes about 16,380 bytes for one literal, two for each character of
# wide text. Literals that stand beside each other may be longer together.
set(literal_characters 8000)

if(NOT DEFINED FOLDER)
  set(FOLDER "${CMAKE_CURRENT_LIST_DIR}")
endif()
include("${FOLDER}/pieces.cmake")

set(project_file "${CMAKE_CURRENT_LIST_DIR}/../../../CMakeLists.txt")
file(STRINGS "${project_file}" project REGEX "^project\\(")
if(NOT project MATCHES " VERSION ([0-9]+\\.[0-9]+\\.[0-9]+) ")
  message(FATAL_ERROR "${project_file} names no version of three numbers for the project")
endif()
set(version "${CMAKE_MATCH_1}")

set(page "")
set(constants "")
set(total 0)
foreach(name IN LISTS page_pieces)
  # Read as hexadecimal digits first: a byte that is not ASCII would not survive
  # CMake's own text handling unseen.
  file(READ "${FOLDER}/${name}" digits HEX)
  string(REGEX REPLACE "(..)" "\\1 " bytes "${digits}")
  string(REPLACE "0d 0a " "0a " bytes "${bytes}")
  if(bytes MATCHES "([89a-f]. |0[0-9b-f] |1. |7f )")
    message(FATAL_ERROR
      "${name} holds the byte 0x${CMAKE_MATCH_1}: the page is plain ASCII text; "
      "write symbols as character references such as &#x2713;")
  endif()

  file(READ "${FOLDER}/${name}" text)
  string(REPLACE "\r\n" "\n" text "${text}")
  string(REPLACE "@PROJECT_VERSION@" "${version}" text "${text}")
  string(LENGTH "${text}" length)
  math(EXPR total "${total} + ${length}")
  if(length GREATER piece_limit)
    message(FATAL_ERROR "${name} has ${length} bytes, more than the ${piece_limit} that one piece may have")
  endif()

  string(FIND "${text}" ")page\"" delimiter)
  if(NOT delimiter EQUAL -1)
    message(FATAL_ERROR "${name} holds the characters )page\", which end the C++ literal around it")
  endif()
  string(APPEND page "${text}")

  string(APPEND constants "\n    // ${name}, ${length} characters")
  set(start 0)
  while(start LESS length)
    string(SUBSTRING "${text}" ${start} ${literal_characters} part)
    string(APPEND constants "\n    LR\"page(${part})page\"")
    math(EXPR start "${start} + ${literal_characters}")
  endwhile()
  string(APPEND constants ",\n")
endforeach()

if(NOT total LESS page_capacity)
  message(FATAL_ERROR "The page has ${total} characters; it must stay below ${page_capacity}")
endif()

if(DEFINED HTML)
  file(WRITE "${HTML}" "${page}")
endif()
if(DEFINED HEADER)
  file(WRITE "${HEADER}" "#pragma once

#include <cstddef>
#include <string_view>

// Made from src/ui/page by join_pieces.cmake.

inline constexpr std::size_t page_capacity = ${page_capacity};

inline constexpr std::wstring_view page_pieces[] = {${constants}};
")
endif()
