# Compiles for macOS 13 with Clang on Debian, without anything of a Mac: the C++ library's headers are
# libc++'s, the C library's are musl's with those of include/ before them. Programs cannot be linked, but
# for modules whose missing names the system would bring.
#
# Usage: cmake --toolchain tests/macos/toolchain.cmake -DCMAKE_SYSTEM_PROCESSOR=arm64 (or x86_64) ...

# Read a second time at the end of project(), which sets this anew. The libraries' targets name this
# folder, but it also holds the headers of this system's C library.
set(CMAKE_PROJECT_INCLUDE "${CMAKE_CURRENT_LIST_FILE}")
set(CMAKE_C_IMPLICIT_INCLUDE_DIRECTORIES /usr/include)
set(CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES /usr/include)

set(CMAKE_SYSTEM_NAME Darwin)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CMAKE_SYSTEM_PROCESSOR)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_INSTALL_NAME_TOOL llvm-install-name-tool)
set(CMAKE_OSX_SYSROOT "")
find_program(CMAKE_C_COMPILER clang)
find_program(CMAKE_CXX_COMPILER clang++)
set(CMAKE_OBJCXX_COMPILER "${CMAKE_CXX_COMPILER}")
foreach(language IN ITEMS C CXX OBJCXX)
    set(CMAKE_${language}_COMPILER_TARGET ${CMAKE_SYSTEM_PROCESSOR}-apple-macos13)
endforeach()
# Where this system keeps the packages of libraries.
execute_process(COMMAND cc -dumpmachine OUTPUT_VARIABLE CMAKE_LIBRARY_ARCHITECTURE
                OUTPUT_STRIP_TRAILING_WHITESPACE)

# The libraries' headers, in a folder without the C library's.
set(libraries "${CMAKE_BINARY_DIR}/libraries")
file(MAKE_DIRECTORY "${libraries}")
file(GLOB headers /usr/include/pugi*.hpp)
foreach(header IN ITEMS CLI csv.h fmt gtest nlohmann re2 spdlog zconf.h zlib.h)
    list(APPEND headers /usr/include/${header})
endforeach()
foreach(header IN LISTS headers)
    cmake_path(GET header FILENAME name)
    file(CREATE_LINK "${header}" "${libraries}/${name}" SYMBOLIC)
endforeach()

file(GLOB musl /usr/include/*-linux-musl)
file(GLOB libcxx /usr/lib/llvm-*/include/c++/v1)
set(own "-include ${CMAKE_CURRENT_LIST_DIR}/include/DenyLinuxCalls.h -isystem ${CMAKE_CURRENT_LIST_DIR}/include -isystem ${musl} -isystem ${libraries}")
# Without a compiler's extensions musl's headers must be asked for POSIX.
set(CMAKE_C_FLAGS_INIT "-nostdlibinc -D_XOPEN_SOURCE=700 ${own}")
set(CMAKE_CXX_FLAGS_INIT
    "-nostdinc++ -D_LIBCPP_DISABLE_AVAILABILITY -isystem ${libcxx} ${CMAKE_C_FLAGS_INIT}")
set(CMAKE_OBJCXX_FLAGS_INIT "${CMAKE_CXX_FLAGS_INIT}")
# The compiler is told things for compiling when it links too.
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-fuse-ld=lld -nostdlib -Wno-unused-command-line-argument -undefined dynamic_lookup -F${CMAKE_CURRENT_LIST_DIR}/frameworks")
