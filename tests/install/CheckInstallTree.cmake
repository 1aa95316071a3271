# Installs a finished build into a scratch prefix and checks what a desktop needs from it: the
# executable, the desktop entry, the AppStream metainfo and the icon at every size, then runs the
# freedesktop validators over the two data files.
#
# Arguments (-D): BUILD_DIR, PREFIX (emptied first), APP_ID, ICON_SIZES (comma-separated).
# A missing validator is reported as "install tree check skipped" after the other checks pass; the
# test's SKIP_REGULAR_EXPRESSION turns that into a skipped test rather than a pass.

foreach(argument BUILD_DIR PREFIX APP_ID ICON_SIZES)
    if(NOT DEFINED ${argument})
        message(FATAL_ERROR "CheckInstallTree: -D${argument}=... is required")
    endif()
endforeach()

file(REMOVE_RECURSE "${PREFIX}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${PREFIX}"
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "cmake --install failed (${result}):\n${output}")
endif()

function(require_file path)
    if(NOT EXISTS "${PREFIX}/${path}")
        message(FATAL_ERROR "missing from the install tree: ${path}")
    endif()
endfunction()

# A PNG keeps its width and height as big-endian 32-bit numbers at bytes 16 to 23.
function(require_png_side path side)
    require_file("${path}")
    file(READ "${PREFIX}/${path}" signature LIMIT 8 HEX)
    file(READ "${PREFIX}/${path}" dimensions OFFSET 16 LIMIT 8 HEX)
    math(EXPR expected "${side}" OUTPUT_FORMAT HEXADECIMAL)
    string(SUBSTRING "${expected}" 2 -1 expected)
    string(LENGTH "${expected}" length)
    math(EXPR padding "8 - ${length}")
    string(REPEAT "0" ${padding} zeros)
    set(expected "${zeros}${expected}")
    string(TOLOWER "${expected}${expected}" expected)
    if(NOT signature STREQUAL "89504e470d0a1a0a" OR NOT dimensions STREQUAL expected)
        message(FATAL_ERROR "${path} is not a ${side} by ${side} PNG (${signature} ${dimensions})")
    endif()
endfunction()

set(desktop_entry "share/applications/${APP_ID}.desktop")
set(metainfo "share/metainfo/${APP_ID}.metainfo.xml")
require_file("bin/tarnwick")
require_file("${desktop_entry}")
require_file("${metainfo}")
string(REPLACE "," ";" sizes "${ICON_SIZES}")
foreach(side IN LISTS sizes)
    require_png_side("share/icons/hicolor/${side}x${side}/apps/${APP_ID}.png" ${side})
endforeach()

file(STRINGS "${PREFIX}/${desktop_entry}" icon_line REGEX "^Icon=")
if(NOT icon_line STREQUAL "Icon=${APP_ID}")
    message(FATAL_ERROR "the desktop entry names the icon \"${icon_line}\", not ${APP_ID}")
endif()
file(STRINGS "${PREFIX}/${desktop_entry}" exec_line REGEX "^Exec=")
if(NOT exec_line STREQUAL "Exec=tarnwick")
    message(FATAL_ERROR "the desktop entry starts \"${exec_line}\", not the installed tarnwick")
endif()
file(READ "${PREFIX}/${metainfo}" metainfo_text)
if(metainfo_text MATCHES "@[A-Z_]+@")
    message(FATAL_ERROR "the metainfo still holds an unfilled placeholder: ${CMAKE_MATCH_0}")
endif()

set(skipped "")
find_program(DESKTOP_FILE_VALIDATE desktop-file-validate)
if(DESKTOP_FILE_VALIDATE)
    execute_process(COMMAND "${DESKTOP_FILE_VALIDATE}" "${PREFIX}/${desktop_entry}"
                    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0 OR output MATCHES "error:")
        message(FATAL_ERROR "desktop-file-validate rejects the desktop entry:\n${output}")
    endif()
else()
    list(APPEND skipped desktop-file-validate)
endif()
find_program(APPSTREAMCLI appstreamcli)
if(APPSTREAMCLI)
    execute_process(COMMAND "${APPSTREAMCLI}" validate --no-net --explain "${PREFIX}/${metainfo}"
                    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "appstreamcli validate rejects the metainfo:\n${output}")
    endif()
else()
    list(APPEND skipped appstreamcli)
endif()

if(skipped)
    message("install tree check skipped: the files are in place, but ${skipped} is not installed")
else()
    message(STATUS "install tree complete and valid under ${PREFIX}")
endif()
