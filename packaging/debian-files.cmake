# Run by cpack before it packs: brings the files to what Debian alone wants of its packages. A compressed change log,
# compressed manual pages, and everything readable to all users, whatever the umask of the one who packs.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()
set(prefix ${CPACK_TEMPORARY_INSTALL_DIRECTORY}${CPACK_PACKAGING_INSTALL_PREFIX})
set(share ${prefix}/share)

execute_process(COMMAND date --utc --rfc-email --date=${CPACK_TAVINOR_RELEASE_DATE}
  OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
set(changelog ${share}/doc/${CPACK_PACKAGE_NAME}/changelog)
file(WRITE ${changelog}
"${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium

  * Version ${CPACK_PACKAGE_VERSION}.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")

file(GLOB_RECURSE pages ${share}/man/*.1)
execute_process(COMMAND gzip -9 --no-name --force ${changelog} ${pages} COMMAND_ERROR_IS_FATAL ANY)

execute_process(COMMAND chmod -R u=rwX,go=rX ${prefix} COMMAND_ERROR_IS_FATAL ANY)
