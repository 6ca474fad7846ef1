# Builds the page with npm and makes a source file of it.
#   orvanta_page_source(VARIABLE)   sets VARIABLE to a source file that defines `pageTemplate()`

find_program(ORVANTA_NPM npm)
find_program(ORVANTA_NODE node)
mark_as_advanced(ORVANTA_NPM ORVANTA_NODE)
set(orvanta_page_default OFF)
if(ORVANTA_NPM AND ORVANTA_NODE)
  execute_process(COMMAND ${ORVANTA_NODE} --version OUTPUT_VARIABLE orvanta_node_version OUTPUT_STRIP_TRAILING_WHITESPACE)
  string(REPLACE "v" "" orvanta_node_version "${orvanta_node_version}")
  # What the page's build tool asks for, and Debian 12 has.
  if(orvanta_node_version VERSION_GREATER_EQUAL 18.19)
    set(orvanta_page_default ON)
  endif()
endif()
option(ORVANTA_BUILD_PAGE "Build the page of `orvanta report` (needs Node.js 18.19 and npm)" ${orvanta_page_default})

function(orvanta_page_source variable)
  set(web ${PROJECT_SOURCE_DIR}/web)
  set(room ${PROJECT_SOURCE_DIR}/tools/orvanta/report)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/PageTemplate.cpp)
  set(${variable} ${source} PARENT_SCOPE)
  if(NOT ORVANTA_BUILD_PAGE)
    configure_file(${room}/NoPageTemplate.cpp.in ${source} COPYONLY)
    return()
  endif()
  if(NOT ORVANTA_NPM)
    message(FATAL_ERROR "ORVANTA_BUILD_PAGE needs npm: install Node.js 18.19 or later, or configure with -DORVANTA_BUILD_PAGE=OFF")
  endif()

  # The packages lie beside the page's sources, where npm and editors look for them; all build folders share them.
  set(packages ${web}/node_modules/.package-lock.json)
  add_custom_command(
    OUTPUT ${packages}
    COMMAND ${ORVANTA_NPM} ci --no-audit --no-fund --loglevel=error
    COMMAND ${CMAKE_COMMAND} -E touch ${packages}
    WORKING_DIRECTORY ${web}
    DEPENDS ${web}/package-lock.json
    COMMENT "Installing the page's packages"
    VERBATIM)

  file(GLOB_RECURSE page_sources CONFIGURE_DEPENDS ${web}/src/*)
  list(FILTER page_sources EXCLUDE REGEX "\\.test\\.ts$")
  set(page ${CMAKE_CURRENT_BINARY_DIR}/page/index.html)
  add_custom_command(
    OUTPUT ${page}
    COMMAND ${ORVANTA_NPM} run --silent build:report -- --logLevel warn --outDir ${CMAKE_CURRENT_BINARY_DIR}/page --emptyOutDir
    WORKING_DIRECTORY ${web}
    DEPENDS ${packages} ${page_sources} ${web}/index.html ${web}/vite.config.ts ${web}/tsconfig.json
    COMMENT "Building the page"
    VERBATIM)
  add_custom_command(
    OUTPUT ${source}
    COMMAND ${CMAKE_COMMAND} -DPAGE=${page} -DTEMPLATE=${room}/PageTemplate.cpp.in -DSOURCE=${source} -P ${web}/embed-page.cmake
    DEPENDS ${page} ${room}/PageTemplate.cpp.in ${web}/embed-page.cmake
    COMMENT "Making a source file of the page"
    VERBATIM)
endfunction()
