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
"Tavinor shows one simulated Intel 8085 whole in one window: every register,
flag, memory cell and port can be read and edited in hexadecimal. Programs are
loaded from Intel HEX files, stepped or run with breakpoints, interrupted by
buttons, and traced. A three-pass assembler, a small source editor and example
programs come with it. Its texts are in Spanish.

Tavinor muestra en una sola ventana un Intel 8085 simulado entero: todos los
registros, indicadores, posiciones de memoria y puertos se leen y se cambian
en hexadecimal. Los programas se cargan desde ficheros Intel HEX, se ejecutan
paso a paso o de forma continua, con puntos de ruptura, interrupciones y traza.
Lo acompañan un ensamblador de tres pasadas, un pequeño editor de fuentes y
programas de ejemplo.")
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/debian-files.cmake)
set(CPACK_TAVINOR_RELEASE_DATE ${TAVINOR_RELEASE_DATE})

# The committed tree, whatever else lies about in the folder.
set(CPACK_SOURCE_GENERATOR External)
set(CPACK_SOURCE_PACKAGE_FILE_NAME tavinor-${PROJECT_VERSION})
set(CPACK_EXTERNAL_PACKAGE_SCRIPT ${CMAKE_CURRENT_LIST_DIR}/source-archive.cmake)
find_package(Git QUIET)
set(CPACK_TAVINOR_GIT "${GIT_EXECUTABLE}")
set(CPACK_TAVINOR_SOURCE ${PROJECT_SOURCE_DIR})

include(CPack)
