# Builds for 64-bit ARM. The programs run here under the emulator.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(orvanel_triple aarch64-linux-gnu)
set(CMAKE_C_COMPILER ${orvanel_triple}-gcc)
set(CMAKE_CXX_COMPILER ${orvanel_triple}-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L /usr/${orvanel_triple})

# Libraries and headers come from the target, programs from this machine.
set(CMAKE_FIND_ROOT_PATH /usr/${orvanel_triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
