# The packages: `cpack` makes the Debian one, `cpack --config CPackSourceConfig.cmake` the archive of the sources.
set(TAVINOR_MAINTAINER "Tavinor <maintainers@tavinor.example>" CACHE STRING "Maintainer of the packages")

set(CPACK_PACKAGE_NAME tavinor)
set(CPACK_PACKAGE_VENDOR Tavinor)
set(CPACK_PACKAGE_CONTACT "${TAVINOR_MAINTAINER}")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SECTION education)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The libraries are found in the program itself, and libqt6gui6 brings the X11 platform plugin. Nothing tells that
# hexadecimal wants a font whose zero is no O, nor that the splash is set in the likes of Arial, that addresses
# open in the browser, and that some screens are Wayland's.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS fonts-dejavu-core)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-liberation, qt6-wayland, xdg-utils")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "teaching simulator and assembler for the Intel 8085")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Tavinor teaches how an Intel 8085 works. A single window shows the whole
simulated machine, and what it shows, from the registers to the last byte
of memory, is changed by typing over it. Programs come from Intel HEX files
and are stepped, run up to a breakpoint, interrupted by buttons, and
traced. It comes with a three-pass assembler, a small editor and example
programs. Its texts are in Spanish.

Con Tavinor se aprende cómo funciona un Intel 8085. Una sola ventana
muestra la máquina simulada entera, y lo que muestra, de los registros al
último byte de la memoria, se cambia escribiendo encima. Los programas
llegan en ficheros Intel HEX y se ejecutan paso a paso o hasta un punto de
ruptura, con interrupciones y traza. Lo acompañan un ensamblador de tres
pasadas, un pequeño editor y programas de ejemplo.")
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/debian-files.cmake)
set(CPACK_TAVINOR_RELEASE_DATE ${TAVINOR_RELEASE_DATE})

# The committed tree, whatever else lies about in the folder.
set(CPACK_SOURCE_GENERATOR External)
set(CPACK_SOURCE_PACKAGE_FILE_NAME tavinor-${PROJECT_VERSION})
set(CPACK_EXTERNAL_PACKAGE_SCRIPT ${CMAKE_CURRENT_LIST_DIR}/source-archive.cmake)
set(CPACK_TAVINOR_SOURCE ${PROJECT_SOURCE_DIR})

include(CPack)
