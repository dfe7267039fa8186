# Two Debian packages, one for each component that is installed: `cmake --build build/release --target package`.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tallyquist)
set(CPACK_PACKAGE_CONTACT "Tallyquist maintainers <maintainers@tallyquist.invalid>" CACHE STRING
    "Who maintains the packages, as name and mail address")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_COMPONENTS_ALL program development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME tallyquist)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
"Tells who printed how much, when, on what: turns the job logs of a print server
into tables, and keeps printers, prices and settings. With the plug-ins that
other programs load.")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS tzdata)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SUGGESTS bash-completion)

# The library finds its plug-ins in the application of its own version.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME tallyquist-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
"What programs are built with that use the static library CostCountCommon or
load the exporter plug-in: the library, its CMake package, and headers.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "libc6-dev, libstdc++-12-dev | libstdc++-dev, tallyquist (= ${PROJECT_VERSION})")

set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_SOURCE_DIR}/cmake/DebianDocuments.cmake")
set(CPACK_TALLYQUIST_SOURCE "${CMAKE_SOURCE_DIR}")
include(CPack)
