# Makes the Debian package of a finished build with CPack and checks it the way the archive would: the
# files a desktop needs are in it, it depends on what the program runs, and lintian finds no error.
#
# Arguments (-D): BUILD_DIR, OUTPUT_DIR (emptied first), APP_ID, ICON_SIZES (comma-separated), CPACK.
# Without dpkg-deb or lintian the check reports "deb package check skipped" after what it could do; the
# test's SKIP_REGULAR_EXPRESSION turns that into a skipped test rather than a pass.

foreach(argument BUILD_DIR OUTPUT_DIR APP_ID ICON_SIZES CPACK)
    if(NOT DEFINED ${argument})
        message(FATAL_ERROR "CheckDebPackage: -D${argument}=... is required")
    endif()
endforeach()

find_program(DPKG_DEB dpkg-deb)
if(NOT DPKG_DEB)
    message("deb package check skipped: dpkg-deb is not installed (tools/package installs it)")
    return()
endif()

file(REMOVE_RECURSE "${OUTPUT_DIR}")
execute_process(COMMAND "${CPACK}" -G DEB --config "${BUILD_DIR}/CPackConfig.cmake" -B "${OUTPUT_DIR}"
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "cpack -G DEB failed (${result}):\n${output}")
endif()
file(GLOB packages "${OUTPUT_DIR}/*.deb")
list(LENGTH packages count)
if(NOT count EQUAL 1)
    message(FATAL_ERROR "cpack made ${count} packages instead of one:\n${output}")
endif()
set(package "${packages}")

execute_process(COMMAND "${DPKG_DEB}" --contents "${package}" OUTPUT_VARIABLE contents COMMAND_ERROR_IS_FATAL ANY)
set(expected usr/bin/tarnwick usr/share/applications/${APP_ID}.desktop usr/share/metainfo/${APP_ID}.metainfo.xml
             usr/share/doc/tarnwick/copyright usr/share/doc/tarnwick/changelog.gz usr/share/man/man1/tarnwick.1.gz)
string(REPLACE "," ";" sizes "${ICON_SIZES}")
foreach(side IN LISTS sizes)
    list(APPEND expected usr/share/icons/hicolor/${side}x${side}/apps/${APP_ID}.png)
endforeach()
foreach(path IN LISTS expected)
    string(FIND "${contents}" " ./${path}\n" at)
    if(at EQUAL -1)
        message(FATAL_ERROR "${package} lacks /${path}:\n${contents}")
    endif()
endforeach()
if(contents MATCHES "usr/local")
    message(FATAL_ERROR "${package} installs under /usr/local:\n${contents}")
endif()

execute_process(COMMAND "${DPKG_DEB}" --field "${package}" Depends OUTPUT_VARIABLE depends COMMAND_ERROR_IS_FATAL ANY)
foreach(dependency openssh-client qt6-qpa-plugins libqt6core6 libqt6gui6 libqt6widgets6)
    if(NOT depends MATCHES "(^|[ ,])${dependency}([ ,(]|\n|$)")
        message(FATAL_ERROR "${package} does not depend on ${dependency}: ${depends}")
    endif()
endforeach()

find_program(LINTIAN lintian)
if(NOT LINTIAN)
    message("deb package check skipped: ${package} is complete, but lintian is not installed "
            "(tools/package installs it)")
    return()
endif()
execute_process(COMMAND "${LINTIAN}" --fail-on error --tag-display-limit 0 "${package}"
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "lintian rejects ${package} (${result}):\n${output}")
endif()
message(STATUS "deb package ready: ${package}\nDepends: ${depends}lintian:\n${output}")
