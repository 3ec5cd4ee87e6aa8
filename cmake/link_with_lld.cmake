# GNU ld keeps nearly every section of the static C++ library: the program is
# 0.4 MB larger with it. LLVM's linker drops what nobody calls. Debian's cross
# GCC ignores -fuse-ld, so the link step goes through clang's driver, which
# passes the same objects and GCC's own run-time libraries to ld.lld.

option(ORVANTA_LLD "Link with LLVM's linker (clang and lld must be installed)" ${CMAKE_CROSSCOMPILING})

if(ORVANTA_LLD)
  find_program(ORVANTA_CLANG clang++ REQUIRED)
  execute_process(
    COMMAND x86_64-w64-mingw32-g++-win32 -print-libgcc-file-name
    OUTPUT_VARIABLE orvanta_libgcc OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  get_filename_component(orvanta_gcc_libraries "${orvanta_libgcc}" DIRECTORY)
  set(orvanta_link_driver
    "${ORVANTA_CLANG} --target=x86_64-w64-mingw32 -fuse-ld=lld -L${orvanta_gcc_libraries}")
  set(CMAKE_CXX_LINK_EXECUTABLE
    "${orvanta_link_driver} <LINK_FLAGS> <OBJECTS> -o <TARGET> <LINK_LIBRARIES>")
  set(CMAKE_CXX_CREATE_SHARED_LIBRARY
    "${orvanta_link_driver} -shared <LINK_FLAGS> <OBJECTS> -o <TARGET> <LINK_LIBRARIES>")
endif()
