# Adds what Debian wants of every package to the staged files of each component, before CPack packs them: the copyright
# file and the changelogs. Documents are compressed, always to the same bytes.
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  set(root ${CPACK_TEMPORARY_DIRECTORY}/${component})
  string(TOUPPER ${component} COMPONENT)
  set(documents ${root}/usr/share/doc/${CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME})
  configure_file(${CMAKE_CURRENT_LIST_DIR}/copyright ${documents}/copyright COPYONLY)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/changelog ${documents}/changelog.Debian COPYONLY)
  configure_file(${CPACK_MCS_CHANGELOG} ${documents}/changelog COPYONLY)

  file(GLOB manuals ${root}/usr/share/man/*/*.[0-9])
  execute_process(COMMAND gzip -9nf ${documents}/changelog.Debian ${documents}/changelog ${manuals}
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
