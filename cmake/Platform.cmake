# The one place where the build asks which system it is on. It picks the folder of the platform
# seam's sources, the name of the folder that holds code in a bundle, and the form of export lists.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    set(TALLYQUIST_PLATFORM linux)
    set(TALLYQUIST_CODE_FOLDER Linux)
else()
    message(FATAL_ERROR "There is no platform backend for ${CMAKE_SYSTEM_NAME}.")
endif()

# Lets a plug-in export what its list names and nothing else. The list for a system lies beside the
# plug-in's sources as exports.<platform>.
function(tallyquist_export_only target)
    set(list "${CMAKE_CURRENT_SOURCE_DIR}/exports.${TALLYQUIST_PLATFORM}")
    target_link_options(${target} PRIVATE "LINKER:--version-script=${list}")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${list}")
endfunction()
