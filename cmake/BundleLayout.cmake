# The build tree holds the application as it is installed, so that programs run from it unchanged.
set(TALLYQUIST_APP Tallyquist.app)
set(TALLYQUIST_CONTENTS "${CMAKE_BINARY_DIR}/${TALLYQUIST_APP}/Contents")
set(TALLYQUIST_CONTENTS_INSTALL "lib/${TALLYQUIST_APP}/Contents")

# Writes the Info.plist of a bundle whose contents lie in `relative` below the application's, and installs it.
function(tallyquist_info_plist name type relative)
    set(BUNDLE_NAME "${name}")
    set(BUNDLE_TYPE "${type}")
    configure_file("${CMAKE_SOURCE_DIR}/resources/Info.plist.in"
                   "${TALLYQUIST_CONTENTS}/${relative}Info.plist" @ONLY)
    install(FILES "${TALLYQUIST_CONTENTS}/${relative}Info.plist"
            DESTINATION "${TALLYQUIST_CONTENTS_INSTALL}/${relative}")
endfunction()

# Makes the module target NAME the code of the bundle PlugIns/NAME.plugin.
function(tallyquist_plugin_bundle name)
    set(relative "PlugIns/${name}.plugin/Contents/")
    set_target_properties(${name} PROPERTIES PREFIX "" SUFFIX ".so"
        LIBRARY_OUTPUT_DIRECTORY "${TALLYQUIST_CONTENTS}/${relative}${TALLYQUIST_CODE_FOLDER}")
    install(TARGETS ${name}
            DESTINATION "${TALLYQUIST_CONTENTS_INSTALL}/${relative}${TALLYQUIST_CODE_FOLDER}")
    tallyquist_info_plist(${name} BNDL "${relative}")
endfunction()

tallyquist_info_plist(tallyquist APPL "")
