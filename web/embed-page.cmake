# Writes the page into a source file, byte by byte.
#   cmake -DPAGE=index.html -DTEMPLATE=PageTemplate.cpp.in -DSOURCE=PageTemplate.cpp -P embed-page.cmake
file(READ ${PAGE} hex HEX)
# Characters may be signed: bytes from 0x80 on are written as such.
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," ORVANTA_PAGE_BYTES "${hex}")
string(REGEX REPLACE "(.................................................................................................................)," "\\1,\n" ORVANTA_PAGE_BYTES "${ORVANTA_PAGE_BYTES}")
configure_file(${TEMPLATE} ${SOURCE} @ONLY)
