# Windows from Debian, by MinGW-w64: what both processors have in common. ORVANEL_PROCESSOR is set by who includes this.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${ORVANEL_PROCESSOR})
set(orvanel_triple ${ORVANEL_PROCESSOR}-w64-mingw32)
# The threads of POSIX, for the tests' std::thread; the other kind has none.
set(CMAKE_C_COMPILER ${orvanel_triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${orvanel_triple}-g++-posix)
set(CMAKE_RC_COMPILER ${orvanel_triple}-windres)

# What we make runs where nothing but Windows is installed, and is the same whenever it is made.
set(orvanel_link_flags "-static -Wl,--no-insert-timestamp")
set(CMAKE_EXE_LINKER_FLAGS_INIT "${orvanel_link_flags}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${orvanel_link_flags}")

# Libraries and headers are those of the target, programs those of this machine.
set(CMAKE_FIND_ROOT_PATH /usr/${orvanel_triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Of zlib the library itself; the one that needs zlib1.dll would be found first.
set(ZLIB_LIBRARY /usr/${orvanel_triple}/lib/libz.a CACHE FILEPATH "zlib")
