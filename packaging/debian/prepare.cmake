# CPack runs this on the staged folder of each package: its change log and licences, and manual pages packed.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(component package IN ZIP_LISTS CPACK_COMPONENTS_ALL CPACK_ZORVELA_PACKAGES)
  set(prefix ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share)
  set(documents ${prefix}/doc/${package})
  file(WRITE ${documents}/changelog
       "${package} (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium\n\n"
       "  * Version ${CPACK_PACKAGE_VERSION}. What changed is in CHANGELOG.md of the source.\n\n"
       " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
  execute_process(COMMAND cat ${CPACK_ZORVELA_LICENCES} OUTPUT_FILE ${documents}/copyright COMMAND_ERROR_IS_FATAL ANY)
  file(GLOB packed ${prefix}/man/man1/*.1 ${documents}/changelog)
  execute_process(COMMAND gzip -9n ${packed} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
