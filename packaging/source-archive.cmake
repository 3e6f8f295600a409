# Run by cpack: packs what is committed. Git is looked for here and not when the build is configured, which would be
# remembered where it is installed later.
set(archive ${CPACK_PACKAGE_DIRECTORY}/${CPACK_PACKAGE_FILE_NAME}.tar.gz)
file(MAKE_DIRECTORY ${CPACK_PACKAGE_DIRECTORY})
execute_process(
  COMMAND git archive --format=tar.gz --prefix=${CPACK_PACKAGE_FILE_NAME}/ --output=${archive} HEAD
  WORKING_DIRECTORY ${CPACK_TAVINOR_SOURCE}
  COMMAND_ERROR_IS_FATAL ANY)
set(CPACK_EXTERNAL_BUILT_PACKAGES ${archive})
