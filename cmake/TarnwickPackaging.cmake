# `cpack -G DEB` in a build folder makes a Debian package from the install rules. The binary is the only
# shared object, so dpkg-shlibdeps (from dpkg-dev) works out the exact Qt libraries; without it the
# package names them by hand.

set(CPACK_PACKAGE_NAME tarnwick)
set(CPACK_PACKAGE_VENDOR "The Tarnwick developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "editor for the OpenSSH client config and known_hosts")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR DEB)
set(CPACK_SOURCE_GENERATOR TGZ)
# The installed tree must not depend on the umask of whoever builds the package.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(TARNWICK_PACKAGE_MAINTAINER "The Tarnwick developers <developers@tarnwick.app>"
    CACHE STRING "Maintainer field of the Debian package")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${TARNWICK_PACKAGE_MAINTAINER}")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "\
Tarnwick edits the two OpenSSH client files of one user, ~/.ssh/config and
~/.ssh/known_hosts. It shows the configuration as a list of host blocks beside
a structured editor, offers the same file as raw text with a parse check, and
lists the known_hosts entries to search, mark, comment out or remove them.
Every save keeps a timestamped backup, writes atomically and reads the file
back to verify it. Connect starts ssh to a host in the user's terminal.")

# Connect and the config check run the OpenSSH client; the platform plugin is what lets Qt open a window.
set(tarnwick_runtime_depends "openssh-client, qt6-qpa-plugins")
find_program(TARNWICK_DPKG_SHLIBDEPS dpkg-shlibdeps)
if(TARNWICK_DPKG_SHLIBDEPS)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_DEPENDS "${tarnwick_runtime_depends}")
else()
    string(CONCAT CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6core6 (>= 6.4), libqt6gui6 (>= 6.4), "
                  "libqt6widgets6 (>= 6.4), libc6, libstdc++6, ${tarnwick_runtime_depends}")
endif()

include(CPack)
