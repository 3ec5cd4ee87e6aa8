# One interface target carries the language level, the warnings and the Windows
# version for everything that we compile.

add_library(orvanta_options INTERFACE)
target_compile_features(orvanta_options INTERFACE cxx_std_20)
target_include_directories(orvanta_options INTERFACE
  "${CMAKE_SOURCE_DIR}/src" "${CMAKE_BINARY_DIR}/generated")
target_compile_definitions(orvanta_options INTERFACE
  UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN
  WINVER=0x0A00 _WIN32_WINNT=0x0A00 NTDDI_VERSION=0x0A000003)

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(MSVC)
  target_compile_options(orvanta_options INTERFACE
    /W4 /WX /permissive- /utf-8 /Zc:__cplusplus /guard:cf /sdl)
  target_link_options(orvanta_options INTERFACE /guard:cf /Brepro)
  # No Visual C++ redistributable: the program must start on a bare machine.
  set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
else()
  target_compile_options(orvanta_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
    $<$<CXX_COMPILER_ID:Clang>:-Wreserved-identifier>
    -fstack-protector-strong -ffunction-sections -fdata-sections -fno-ident
    # The same bytes wherever the tree lies on the disk.
    "-ffile-prefix-map=${CMAKE_SOURCE_DIR}=." "-ffile-prefix-map=${CMAKE_BINARY_DIR}=./build")
  target_link_options(orvanta_options INTERFACE
    -static -Wl,--gc-sections -Wl,--tsaware -Wl,--no-insert-timestamp)
  set(CMAKE_CXX_FLAGS_RELEASE "-Os -DNDEBUG")
  set(CMAKE_CXX_FLAGS_DEBUG "-Og -g")
endif()

if(MINGW)
  # winnt.h brings along all that the processors of the last twenty years can do. Nothing here asks for it, and reading
  # it is a third of the work on an ordinary file: take those headers, GCC's and clang's, for included already.
  set(instruction_sets _X86INTRIN_H_INCLUDED _IMMINTRIN_H_INCLUDED __X86INTRIN_H __IMMINTRIN_H)
  include(CheckCXXSourceCompiles)
  list(TRANSFORM instruction_sets PREPEND -D OUTPUT_VARIABLE CMAKE_REQUIRED_DEFINITIONS)
  check_cxx_source_compiles("#include <windows.h>\nint main() { return 0; }" ORVANTA_WITHOUT_INSTRUCTION_SETS)
  unset(CMAKE_REQUIRED_DEFINITIONS)
  if(ORVANTA_WITHOUT_INSTRUCTION_SETS)
    target_compile_definitions(orvanta_options INTERFACE ${instruction_sets})
  endif()

  include(link_with_lld)
  # Without the protection that it is part of; whatever has that one is linked with it.
  add_library(orvanta_stack_guard STATIC "${CMAKE_SOURCE_DIR}/src/common/stack_guard.cpp")
  target_compile_features(orvanta_stack_guard PRIVATE cxx_std_20)
  target_compile_options(orvanta_stack_guard PRIVATE
    $<FILTER:$<TARGET_PROPERTY:orvanta_options,INTERFACE_COMPILE_OPTIONS>,EXCLUDE,stack-protector>)
  target_compile_definitions(orvanta_stack_guard PRIVATE
    $<TARGET_PROPERTY:orvanta_options,INTERFACE_COMPILE_DEFINITIONS>)
  target_link_libraries(orvanta_options INTERFACE orvanta_stack_guard)
endif()
