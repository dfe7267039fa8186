foreach(language IN ITEMS CXX OBJCXX)
    set(CMAKE_${language}_STANDARD 20)
    set(CMAKE_${language}_STANDARD_REQUIRED ON)
    set(CMAKE_${language}_EXTENSIONS OFF)
    set(CMAKE_${language}_VISIBILITY_PRESET hidden)
endforeach()
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
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
