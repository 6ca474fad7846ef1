# What is installed, where, and how a host's build finds it: headers, libraries, a CMake package and pkg-config files.
include(CMakePackageConfigHelpers)

set(ORVANTA_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Orvanta)
set(ORVANTA_HEADER_DIR ${CMAKE_INSTALL_INCLUDEDIR}/orvanta)
set(ORVANTA_DOC_DIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/orvanta)
if(ORVANTA_DEBIAN)
  set(ORVANTA_DOC_DIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/liborvanta-dev)
endif()

# A path inside the installation as pkg-config has to see it: relative to the prefix, so that the tree can be moved,
# unless the packager gave an absolute one.
function(orvanta_pkg_config_dir variable dir)
  if(IS_ABSOLUTE "${dir}")
    set(${variable} "${dir}" PARENT_SCOPE)
  else()
    set(${variable} "\${prefix}/${dir}" PARENT_SCOPE)
  endif()
endfunction()

# What every library of the project has in common: where its headers lie, what it may be linked into, how it is named.
function(orvanta_add_library target)
  add_library(${target} ${ARGN})
  add_library(Orvanta::${target} ALIAS ${target})
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
                                              $<INSTALL_INTERFACE:${ORVANTA_HEADER_DIR}>)
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:orvanta_options> $<BUILD_INTERFACE:orvanta_internals>)
  target_compile_options(${target} PRIVATE ${ORVANTA_HOT_OPTIONS})
  if(NOT BUILD_SHARED_LIBS)
    target_compile_definitions(${target} PUBLIC ORVANTA_STATIC)
  endif()
  # Calls within a library are meant for that library: none is to be replaced from outside, so that they may be inlined.
  if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND BUILD_SHARED_LIBS)
    target_compile_options(${target} PRIVATE $<$<NOT:$<CONFIG:Debug>>:-fno-semantic-interposition>)
    target_link_options(${target} PRIVATE $<$<NOT:$<CONFIG:Debug>>:-Wl,-Bsymbolic-functions>)
  endif()
  # A static library may end up in a host's plug-in. An installed library finds the others beside itself.
  set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${ORVANTA_ABI}
                                             POSITION_INDEPENDENT_CODE ON INSTALL_RPATH "\$ORIGIN")
endfunction()

# Installs a library made by the function above, with a pkg-config file: its name, what it is, what it stands on.
function(orvanta_install_library target pc_name pc_description)
  cmake_parse_arguments(PARSE_ARGV 3 pc "" "" "REQUIRES")
  install(
    TARGETS ${target}
    EXPORT OrvantaTargets
    RUNTIME COMPONENT libraries
    LIBRARY COMPONENT libraries NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development)

  orvanta_pkg_config_dir(pc_include_dir "${ORVANTA_HEADER_DIR}")
  orvanta_pkg_config_dir(pc_lib_dir "${CMAKE_INSTALL_LIBDIR}")
  # pkg-config files lie two folders below the prefix, or three where libraries have a folder for each machine.
  file(RELATIVE_PATH pc_up "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
  set(pc_prefix "\${pcfiledir}/${pc_up}")
  if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(pc_prefix "${CMAKE_INSTALL_PREFIX}")
  endif()
  string(REGEX REPLACE "/$" "" pc_prefix "${pc_prefix}")
  list(JOIN pc_REQUIRES ", " pc_requires)
  set(pc_flags "")
  set(pc_private_libs "")
  if(NOT BUILD_SHARED_LIBS)
    set(pc_flags " -DORVANTA_STATIC")
    # A C program that links statically is told of the C++ libraries that the code needs.
    foreach(lib IN LISTS CMAKE_CXX_IMPLICIT_LINK_LIBRARIES)
      if(NOT lib IN_LIST CMAKE_C_IMPLICIT_LINK_LIBRARIES)
        string(APPEND pc_private_libs " -l${lib}")
      endif()
    endforeach()
  endif()
  set(pc_name ${pc_name})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/orvanta.pc.in ${PROJECT_BINARY_DIR}/${pc_name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${pc_name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()

# Installs what belongs to no single library.
function(orvanta_install_package)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${ORVANTA_HEADER_DIR} COMPONENT development)
  install(EXPORT OrvantaTargets NAMESPACE Orvanta:: DESTINATION ${ORVANTA_CMAKE_DIR} COMPONENT development)
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/OrvantaConfig.cmake.in
                                ${PROJECT_BINARY_DIR}/OrvantaConfig.cmake INSTALL_DESTINATION ${ORVANTA_CMAKE_DIR}
                                NO_SET_AND_CHECK_MACRO)
  # Below 1.0 a new minor version may change what a host has to write.
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/OrvantaConfigVersion.cmake COMPATIBILITY SameMinorVersion)
  install(FILES ${PROJECT_BINARY_DIR}/OrvantaConfig.cmake ${PROJECT_BINARY_DIR}/OrvantaConfigVersion.cmake
          DESTINATION ${ORVANTA_CMAKE_DIR} COMPONENT development)
  if(NOT ORVANTA_DEBIAN)
    install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${ORVANTA_DOC_DIR} COMPONENT libraries)
  endif()
  install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION ${ORVANTA_DOC_DIR}
          COMPONENT development)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION ${ORVANTA_DOC_DIR} COMPONENT development)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION ${ORVANTA_DOC_DIR} COMPONENT development)
endfunction()
