# Builds for 64-bit Windows. The programs run here under Wine.
set(ORVANEL_PROCESSOR x86_64)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine.sh)
