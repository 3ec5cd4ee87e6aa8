# Cross build for 64-bit Windows with clang and the headers and libraries of
# Debian's MinGW-w64 GCC: a second opinion on the same code.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

execute_process(
  COMMAND x86_64-w64-mingw32-g++-win32 -print-libgcc-file-name
  OUTPUT_VARIABLE mingw_libgcc OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
get_filename_component(mingw_gcc_folder "${mingw_libgcc}" DIRECTORY)
set(CMAKE_CXX_FLAGS_INIT
  "-isystem ${mingw_gcc_folder}/include/c++ -isystem ${mingw_gcc_folder}/include/c++/x86_64-w64-mingw32")
# The compiler check links a program, too.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-fuse-ld=lld -L${mingw_gcc_folder}")
