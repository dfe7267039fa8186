set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
# POSIX and the C library's common extensions (timegm, strdup ...) without the compiler's own dialect.
add_compile_definitions(_DEFAULT_SOURCE _FILE_OFFSET_BITS=64)
include_directories("${CMAKE_SOURCE_DIR}")

set(TALLYQUIST_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")
if(TALLYQUIST_SANITIZE)
    add_compile_options(-fsanitize=${TALLYQUIST_SANITIZE} -fno-omit-frame-pointer
                        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${TALLYQUIST_SANITIZE})
endif()
