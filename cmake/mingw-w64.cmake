# Builds for 64-bit Windows with Debian's g++-mingw-w64-x86-64-posix, and runs what was built under wine:
#   cmake -S . -B build/windows --toolchain cmake/mingw-w64.cmake
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
# The variant with POSIX threads: it has std::thread and std::mutex.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Libraries and headers of the building machine are no use; programs are. scripts/windows-libraries makes the second folder.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${CMAKE_CURRENT_LIST_DIR}/../build/windows-libraries)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} ${CMAKE_CURRENT_LIST_DIR}/../build/windows-libraries/lib/pkgconfig)

# What is built runs on a Windows that has no compiler: the runtime libraries go into it, and what one library has of them
# is nothing that another should link to.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -Wl,--exclude-libs,ALL")

find_program(ORVANTA_WINE NAMES wine64 wine PATHS /usr/lib/wine)
if(ORVANTA_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${ORVANTA_WINE})
endif()
