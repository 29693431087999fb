# Debian packages: `cpack --preset deb`, or script/package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME mcserver-storage)
set(CPACK_PACKAGE_CONTACT "mcserver_storage maintainers <maintainers@mcserver-storage.example>")
set(CPACK_COMPONENTS_ALL library development tools)
# Staged with DESTDIR, so that what is written when installing names the prefix of the packages.
set(CPACK_SET_DESTDIR ON)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(debian_version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/debian/add_documents.cmake)
set(CPACK_MCS_CHANGELOG ${PROJECT_SOURCE_DIR}/CHANGELOG.md)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libmcserver-storage${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/debian/triggers)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "storage inventory plug-in of a server's management daemon
The plug-in tells the daemon that loads it what storage the server has: RAID
controllers, their drives and battery backup units, and NVMe devices. It reads
the store files that a collector keeps under /var, and needs only libc.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libmcserver-storage-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${CPACK_DEBIAN_LIBRARY_PACKAGE_NAME} (= ${debian_version}), libc6-dev")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "storage inventory plug-in of a management daemon (development)
What building a daemon that loads or links the plug-in needs: the C header,
the files for pkg-config and CMake, and the manual of the interface.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME mcserver-storage-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${CPACK_DEBIAN_LIBRARY_PACKAGE_NAME} (>= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_TOOLS_DESCRIPTION "show a server's storage inventory on the command line
mcstore loads the storage inventory plug-in as a management daemon does. It
shows the inventory as a table, JSON, XML or bytes, watches what changes, and
writes store files from a description.")

include(CPack)
