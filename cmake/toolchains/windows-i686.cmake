# Builds for 32-bit Windows. The programs cannot run here.
set(ORVANEL_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
