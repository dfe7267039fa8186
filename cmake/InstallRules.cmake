# What `cmake --install` lays out beside the bundles, which install themselves (BundleLayout.cmake). Its parts are
# the component program, and development for what programs that use the library are built with.
include(CMakePackageConfigHelpers)

install(TARGETS tallyquist DESTINATION "${TALLYQUIST_CONTENTS_INSTALL}/${TALLYQUIST_CODE_FOLDER}")
set(program "${TALLYQUIST_CONTENTS_INSTALL}/${TALLYQUIST_CODE_FOLDER}/tallyquist")
if(TALLYQUIST_FINDS_LINKED_BUNDLE)
    install(CODE "
    set(bin \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin\")
    file(MAKE_DIRECTORY \"\${bin}\")
    file(CREATE_LINK \"../${program}\" \"\${bin}/tallyquist\" SYMBOLIC)")
else()
    # The bundle of a program that is started through a link would be looked for around the link.
    file(CONFIGURE OUTPUT starter @ONLY CONTENT "#!/bin/sh\nexec \"$(dirname \"$0\")/../@program@\" \"$@\"\n")
    install(PROGRAMS "${CMAKE_BINARY_DIR}/starter" DESTINATION bin RENAME tallyquist)
endif()
configure_file(docs/tallyquist.1.in "${CMAKE_BINARY_DIR}/docs/tallyquist.1" @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/docs/tallyquist.1" DESTINATION share/man/man1)

# The program tells its own commands, which it can only where it runs.
if(NOT CMAKE_CROSSCOMPILING)
    set(completion "${CMAKE_BINARY_DIR}/completions/tallyquist")
    file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/completions")
    add_custom_command(OUTPUT "${completion}" COMMAND tallyquist completion bash > "${completion}"
                       DEPENDS tallyquist VERBATIM)
    add_custom_target(completion ALL DEPENDS "${completion}")
    install(FILES "${completion}" DESTINATION share/bash-completion/completions)
endif()

# The header folders keep their places below the include root. What lies under src/ and xmlpxd/ is
# internal.
foreach(folder IN ITEMS JobCostExporter CostCountCommon cm_common compatible)
    install(DIRECTORY ${folder} DESTINATION include/tallyquist COMPONENT development
            FILES_MATCHING PATTERN "*.h" PATTERN "src" EXCLUDE PATTERN "xmlpxd" EXCLUDE)
endforeach()

set(package lib/cmake/CostCountCommon)
install(TARGETS CostCountCommon EXPORT CostCountCommonTargets
        ARCHIVE DESTINATION lib COMPONENT development)
install(EXPORT CostCountCommonTargets NAMESPACE CostCountCommon:: DESTINATION ${package}
        COMPONENT development)
configure_package_config_file(cmake/CostCountCommonConfig.cmake.in
    "${CMAKE_BINARY_DIR}/CostCountCommonConfig.cmake" INSTALL_DESTINATION ${package})
write_basic_package_version_file("${CMAKE_BINARY_DIR}/CostCountCommonConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_BINARY_DIR}/CostCountCommonConfig.cmake"
              "${CMAKE_BINARY_DIR}/CostCountCommonConfigVersion.cmake"
        DESTINATION ${package} COMPONENT development)
