# What `cmake --install` installs, in three components: the library, what building against it needs, and mcstore.
include(CMakePackageConfigHelpers)
set(MCS_ZSH_COMPLETION_DIR ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING "Where zsh looks for completions")
set(cmake_config_dir ${CMAKE_INSTALL_LIBDIR}/cmake/mcserver_storage)

install(TARGETS mcserver_storage EXPORT mcserver_storage
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES include/mcserver_storage.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(FILES docs/man/mcserver_storage.7 DESTINATION ${CMAKE_INSTALL_MANDIR}/man7 COMPONENT development)
install(FILES docs/integration.md docs/formats.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(FILES
  docs/examples/host.c docs/examples/host.py docs/examples/host_symbols.c docs/examples/host_symbols.h
  DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT development)

# find_package(mcserver_storage). The major version is the interface's.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/mcserver_storageConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/mcserver_storageConfigVersion.cmake
  DESTINATION ${cmake_config_dir} COMPONENT development)
install(EXPORT mcserver_storage FILE mcserver_storageConfig.cmake NAMESPACE mcserver_storage::
  DESTINATION ${cmake_config_dir} COMPONENT development)

# pkg-config. Its first line is completed when installing, since `cmake --install --prefix` may change the prefix.
set(PKGCONFIG_PREFIX "@CMAKE_INSTALL_PREFIX@")
set(PKGCONFIG_LIBDIR ${CMAKE_INSTALL_LIBDIR})
set(PKGCONFIG_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR})
cmake_path(ABSOLUTE_PATH PKGCONFIG_LIBDIR BASE_DIRECTORY "\${prefix}")
cmake_path(ABSOLUTE_PATH PKGCONFIG_INCLUDEDIR BASE_DIRECTORY "\${prefix}")
list(TRANSFORM MCS_64_BIT_INTERFACES PREPEND -D OUTPUT_VARIABLE pkgconfig_definitions)
list(JOIN pkgconfig_definitions " " PKGCONFIG_DEFINITIONS)
set(pkgconfig_file ${PROJECT_BINARY_DIR}/mcserver_storage.pc)
configure_file(packaging/mcserver_storage.pc.in ${pkgconfig_file}.in @ONLY)
install(CODE "configure_file([[${pkgconfig_file}.in]] [[${pkgconfig_file}]] @ONLY)" COMPONENT development)
install(FILES ${pkgconfig_file} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

if(MCS_TOOLS)
  install(TARGETS mcstore COMPONENT tools)
  install(FILES docs/man/mcstore.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
  install(FILES docs/mcstore.md docs/health.md docs/json.md docs/json.schema.json
    DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT tools)
  install(FILES
    docs/examples/inventory.json docs/examples/inventory-later.json docs/examples/inventory-document.json
    DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT tools)
  install(FILES packaging/completions/mcstore.bash RENAME mcstore
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
  install(FILES packaging/completions/_mcstore DESTINATION ${MCS_ZSH_COMPLETION_DIR} COMPONENT tools)
endif()
