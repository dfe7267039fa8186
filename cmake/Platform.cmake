# The one place where the build asks which system it is on. It picks the folder of the platform
# seam's sources with what they need, the names of the folder and of the files that hold code in a
# bundle, the form of export lists, the option of nm that lists what a plug-in exports, what of a
# module with the property BUNDLE is loaded, and whether a program started through a link finds its bundle.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    set(TALLYQUIST_PLATFORM linux)
    set(TALLYQUIST_PLATFORM_SOURCES
        Bundle.cpp CoreFoundation.cpp FileAttributes.cpp FileCopy.cpp FolderListing.cpp
        FolderNames.cpp Folders.cpp HomeFolder.cpp Launch.cpp LocalizedStrings.cpp Module.cpp
        Preferences.cpp ProcessTable.cpp PropertyList.cpp SemaphoreNames.cpp StringsFile.cpp
        TextFile.cpp TimeZone.cpp)
    set(TALLYQUIST_PLATFORM_LIBRARIES "")
    set(TALLYQUIST_CODE_FOLDER Linux)
    set(TALLYQUIST_CODE_SUFFIX .so)
    set(TALLYQUIST_EXPORT_OPTION --version-script=)
    set(TALLYQUIST_NM_EXPORTED -D)
    set(TALLYQUIST_LOADABLE TARGET_FILE)
    set(TALLYQUIST_FINDS_LINKED_BUNDLE ON)
elseif(CMAKE_SYSTEM_NAME STREQUAL "Darwin")
    enable_language(OBJCXX)
    set(TALLYQUIST_PLATFORM macos)
    set(TALLYQUIST_PLATFORM_SOURCES
        Bundle.cpp CoreFoundation.cpp DarwinCalls.cpp Foundation.mm LocalizedStrings.cpp Module.cpp
        Preferences.cpp SemaphoreNames.cpp TimeZone.cpp)
    set(TALLYQUIST_PLATFORM_LIBRARIES "-framework CoreFoundation" "-framework Foundation")
    set(TALLYQUIST_CODE_FOLDER MacOS)
    set(TALLYQUIST_CODE_SUFFIX "")
    set(TALLYQUIST_EXPORT_OPTION -exported_symbols_list,)
    set(TALLYQUIST_NM_EXPORTED -g)
    set(TALLYQUIST_LOADABLE TARGET_BUNDLE_DIR)
    set(TALLYQUIST_FINDS_LINKED_BUNDLE OFF)
else()
    message(FATAL_ERROR "There is no platform backend for ${CMAKE_SYSTEM_NAME}.")
endif()

# Lets a plug-in export what its list names and nothing else. The list for a system lies beside the
# plug-in's sources as exports.<platform>.
function(tallyquist_export_only target)
    set(list "${CMAKE_CURRENT_SOURCE_DIR}/exports.${TALLYQUIST_PLATFORM}")
    target_link_options(${target} PRIVATE "LINKER:${TALLYQUIST_EXPORT_OPTION}${list}")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${list}")
endfunction()
