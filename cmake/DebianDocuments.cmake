# Makes the folder share/doc of each package, and packs the man page, when the files to be packaged are in place.

# The list of changes of this version as Debian's tools read it. Sets `result`.
function(debian_changelog package result)
    file(READ "${CPACK_TALLYQUIST_SOURCE}/CHANGELOG.md" changes)
    string(FIND "${changes}" "\n## ${CPACK_PACKAGE_VERSION} " begin)
    if(begin EQUAL -1)
        message(FATAL_ERROR "CHANGELOG.md tells nothing of version ${CPACK_PACKAGE_VERSION}.")
    endif()
    string(SUBSTRING "${changes}" ${begin} -1 changes)
    string(FIND "${changes}" "\n- " begin)
    string(SUBSTRING "${changes}" ${begin} -1 changes)
    string(FIND "${changes}" "\n## " end)
    string(SUBSTRING "${changes}" 0 ${end} changes)
    string(REGEX REPLACE "\n  " "\n    " changes "${changes}")
    string(REGEX REPLACE "\n- " "\n  * " changes "${changes}")
    string(STRIP "${changes}" changes)
    string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
    set(${result} "${package} (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium

  ${changes}

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
" PARENT_SCOPE)
endfunction()

# What others wrote and the program holds in itself comes with their terms.
set(terms "Copyright: the Tallyquist maintainers
No licence was given so far: they decide who may pass this package on.
")
set(PROGRAM_terms "${terms}")
set(DEVELOPMENT_terms "${terms}")
foreach(library IN ITEMS libcli11-dev nlohmann-json3-dev libspdlog-dev libfmt-dev)
    file(READ "/usr/share/doc/${library}/copyright" text)
    string(APPEND PROGRAM_terms "\nParts of ${library} are compiled into the program:\n\n${text}")
endforeach()

find_program(GZIP gzip REQUIRED)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER "${component}" key)
    set(package "${CPACK_DEBIAN_${key}_PACKAGE_NAME}")
    set(share "${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX}/share")
    debian_changelog("${package}" changelog)
    file(WRITE "${share}/doc/${package}/changelog" "${changelog}")
    file(WRITE "${share}/doc/${package}/copyright" "${${key}_terms}")
    file(GLOB packed "${share}/doc/${package}/changelog" "${share}/man/*/*.1")
    execute_process(COMMAND "${GZIP}" -9nf ${packed} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
