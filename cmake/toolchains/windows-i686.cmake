# 32-bit Windows. What is built cannot be run here.
set(ORVANEL_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
