# Debian packages by cpack -G DEB: the libraries, what a host is built with, and the command. scripts/package-debian builds,
# checks and tries them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orvanta)
set(CPACK_PACKAGE_CONTACT "The founders of Orvanta <founders@orvanta.invalid>")
# Each package's description begins with a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL libraries development tools)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR} ${PROJECT_BINARY_DIR}/camera
                                                ${PROJECT_BINARY_DIR}/bindings/c)

# The package of the libraries bears the number of their soname.
set(libraries_package liborvanta${ORVANTA_ABI})
set(same_version "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

set(CPACK_DEBIAN_LIBRARIES_PACKAGE_NAME ${libraries_package})
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# The loader's cache is brought up to date by dpkg.
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/debian/triggers)
set(CPACK_COMPONENT_LIBRARIES_DESCRIPTION
    "virtual camera operator for screen recordings - libraries
Decides where the picture of a screen recording should stand, from what
the recorder knows besides the picture: cursor, clicks, changed
rectangles, windows.
.
These are the libraries for C++ and C programs.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME liborvanta-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${libraries_package} ${same_version}")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "virtual camera operator for screen recordings - development files
Decides where the picture of a screen recording should stand, from what
the recorder knows besides the picture: cursor, clicks, changed
rectangles, windows.
.
These are the headers, the CMake package, the pkg-config files, guides
and examples.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME orvanta)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION video)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${libraries_package} ${same_version}")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION
    "virtual camera operator for screen recordings
Decides where the picture of a screen recording should stand, from what
the recorder knows besides the picture: cursor, clicks, changed
rectangles, windows.
.
This is the command, which plans recordings and renders their videos.")

# Each package has its copyright and changes where Debian looks for them.
find_program(ORVANTA_GZIP gzip REQUIRED)
execute_process(COMMAND ${ORVANTA_GZIP} -9nc ${PROJECT_SOURCE_DIR}/packaging/debian/changelog
                OUTPUT_FILE ${PROJECT_BINARY_DIR}/changelog.Debian.gz)
foreach(pair IN ITEMS libraries:${libraries_package} development:liborvanta-dev tools:orvanta)
  string(REPLACE ":" ";" pair ${pair})
  list(GET pair 0 component)
  list(GET pair 1 package)
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/debian/copyright ${PROJECT_BINARY_DIR}/changelog.Debian.gz
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package} COMPONENT ${component})
endforeach()
# Man pages are packed. This comes after the rule that installs them.
install(
  CODE "file(GLOB pages \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_MANDIR}/man1/*.1\")
if(pages)
  execute_process(COMMAND ${ORVANTA_GZIP} -9nf \${pages} COMMAND_ERROR_IS_FATAL ANY)
endif()"
  COMPONENT tools)
include(CPack)
