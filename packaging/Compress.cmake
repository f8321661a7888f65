# Compresses what Debian wants compressed, in the folder that becomes the package.
file(GLOB pages ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/man/man*/*)
file(GLOB changelog ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/doc/*/changelog)
if(NOT pages OR NOT changelog)
  message(FATAL_ERROR "no manual pages or no changelog in ${CPACK_TEMPORARY_INSTALL_DIRECTORY}")
endif()
execute_process(COMMAND gzip -9n ${pages} ${changelog} COMMAND_ERROR_IS_FATAL ANY)
