# Builds for Windows on Debian with MinGW-w64: the common part of both processors. The including file sets
# ORVANEL_PROCESSOR.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${ORVANEL_PROCESSOR})
set(orvanel_triple ${ORVANEL_PROCESSOR}-w64-mingw32)
# The compiler with POSIX threads, for std::thread in the tests; the other variant has none.
set(CMAKE_C_COMPILER ${orvanel_triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${orvanel_triple}-g++-posix)
set(CMAKE_RC_COMPILER ${orvanel_triple}-windres)

# The programs run on a machine with only Windows, and their bytes do not depend on the time of the build.
set(orvanel_link_flags "-static -Wl,--no-insert-timestamp")
set(CMAKE_EXE_LINKER_FLAGS_INIT "${orvanel_link_flags}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${orvanel_link_flags}")

# Libraries and headers come from the target, programs from this machine.
set(CMAKE_FIND_ROOT_PATH /usr/${orvanel_triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# The static zlib; CMake would find the one that needs zlib1.dll first.
set(ZLIB_LIBRARY /usr/${orvanel_triple}/lib/libz.a CACHE FILEPATH "zlib")
