# The build tree holds the application as it is installed, so that programs run from it unchanged.
set(TALLYQUIST_APP Tallyquist.app)
set(TALLYQUIST_CONTENTS "${CMAKE_BINARY_DIR}/${TALLYQUIST_APP}/Contents")
set(TALLYQUIST_CONTENTS_INSTALL "lib/${TALLYQUIST_APP}/Contents")
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME program)

# Writes the Info.plist of a bundle whose contents lie in `relative` below the application's, and installs it.
# A bundle of resources alone must not name code that it lacks.
function(tallyquist_info_plist name type relative)
    set(BUNDLE_NAME "${name}")
    set(BUNDLE_TYPE "${type}")
    set(BUNDLE_EXECUTABLE "")
    if(NOT "RESOURCES_ONLY" IN_LIST ARGN)
        set(BUNDLE_EXECUTABLE "    <key>CFBundleExecutable</key>\n    <string>${name}</string>\n")
    endif()
    configure_file("${CMAKE_SOURCE_DIR}/resources/Info.plist.in"
                   "${TALLYQUIST_CONTENTS}/${relative}Info.plist" @ONLY)
    install(FILES "${TALLYQUIST_CONTENTS}/${relative}Info.plist"
            DESTINATION "${TALLYQUIST_CONTENTS_INSTALL}/${relative}")
endfunction()

# Makes the module target NAME the code of the bundle PlugIns/NAME.plugin.
function(tallyquist_plugin_bundle name)
    set(relative "PlugIns/${name}.plugin/Contents/")
    set_target_properties(${name} PROPERTIES PREFIX "" SUFFIX "${TALLYQUIST_CODE_SUFFIX}"
        LIBRARY_OUTPUT_DIRECTORY "${TALLYQUIST_CONTENTS}/${relative}${TALLYQUIST_CODE_FOLDER}")
    install(TARGETS ${name}
            DESTINATION "${TALLYQUIST_CONTENTS_INSTALL}/${relative}${TALLYQUIST_CODE_FOLDER}")
    tallyquist_info_plist(${name} BNDL "${relative}")
endfunction()

# Makes files below resources/FROM the resources of the bundle whose contents lie in `relative` below the
# application's, at the same places.
#   tallyquist_resources(RELATIVE FROM FILE...)
function(tallyquist_resources relative from)
    foreach(file IN LISTS ARGN)
        set(staged "${relative}Resources/${file}")
        configure_file("${CMAKE_SOURCE_DIR}/resources/${from}${file}"
                       "${TALLYQUIST_CONTENTS}/${staged}" COPYONLY)
        cmake_path(GET staged PARENT_PATH folder)
        install(FILES "${TALLYQUIST_CONTENTS}/${staged}"
                DESTINATION "${TALLYQUIST_CONTENTS_INSTALL}/${folder}")
    endforeach()
endfunction()

tallyquist_info_plist(tallyquist APPL "")
tallyquist_resources("" "" CMSystemSetting.cfg)

tallyquist_info_plist(qvtrelCore BNDL PlugIns/qvtrelCore.plugin/Contents/ RESOURCES_ONLY)
tallyquist_resources(PlugIns/qvtrelCore.plugin/Contents/ qvtrelCore/
    CMUserSetting.cfg
    xmls/BNTCmdBase.xml
    xmls/BNTResultBase.xml
    xmls/BNTRetBase.xml
    xmls/DBSettingBase.xml
    xmls/DetchResultBase.xml
    xmls/PrinterCapsBase.xml
    xmls/PrinterListBase.xml
    xmls/UnitCostBase.xml
    xmls/db_settings
)
