# What `cmake --install` lays out beside the bundles, which install themselves (BundleLayout.cmake).
include(CMakePackageConfigHelpers)

install(TARGETS tallyquist DESTINATION "${TALLYQUIST_CONTENTS_INSTALL}/${TALLYQUIST_CODE_FOLDER}")
install(CODE "
    set(bin \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin\")
    file(MAKE_DIRECTORY \"\${bin}\")
    file(CREATE_LINK
        \"../${TALLYQUIST_CONTENTS_INSTALL}/${TALLYQUIST_CODE_FOLDER}/tallyquist\"
        \"\${bin}/tallyquist\" SYMBOLIC)")
install(FILES docs/tallyquist.1 DESTINATION share/man/man1)

# The header folders keep their places below the include root. What lies under src/ and xmlpxd/ is
# internal.
foreach(folder IN ITEMS JobCostExporter CostCountCommon cm_common compatible)
    install(DIRECTORY ${folder} DESTINATION include/tallyquist
            FILES_MATCHING PATTERN "*.h" PATTERN "src" EXCLUDE PATTERN "xmlpxd" EXCLUDE)
endforeach()

set(package lib/cmake/CostCountCommon)
install(TARGETS CostCountCommon EXPORT CostCountCommonTargets ARCHIVE DESTINATION lib)
install(EXPORT CostCountCommonTargets NAMESPACE CostCountCommon:: DESTINATION ${package})
configure_package_config_file(cmake/CostCountCommonConfig.cmake.in
    "${CMAKE_BINARY_DIR}/CostCountCommonConfig.cmake" INSTALL_DESTINATION ${package})
write_basic_package_version_file("${CMAKE_BINARY_DIR}/CostCountCommonConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_BINARY_DIR}/CostCountCommonConfig.cmake"
              "${CMAKE_BINARY_DIR}/CostCountCommonConfigVersion.cmake" DESTINATION ${package})
