# Installs headers, documents, examples and the files with which CMake and pkg-config find the libraries, and makes
# archives of the installation.
include(CMakePackageConfigHelpers)

install(DIRECTORY include/orvanel DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")

# Documents are in the same folders as here, so that links between them are valid. Links to files that are not installed
# are removed, and links to headers get the installed path.
set(orvanel_doc_folder ${CMAKE_INSTALL_DATADIR}/doc/orvanel)
set(orvanel_include_folder ${CMAKE_INSTALL_FULL_INCLUDEDIR})
cmake_path(RELATIVE_PATH orvanel_include_folder BASE_DIRECTORY ${CMAKE_INSTALL_FULL_DATADIR}/doc/orvanel)
file(GLOB orvanel_pages RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/*.md)
foreach(page README.md CHANGELOG.md ${orvanel_pages})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${page})
  file(READ ${PROJECT_SOURCE_DIR}/${page} text)
  string(REGEX REPLACE "- \\[HACKING[^\n]*\n" "" text "${text}")
  string(REPLACE "](include/" "](${orvanel_include_folder}/" text "${text}")
  string(REGEX REPLACE "\\[([^]\n]+)\\]\\((\\.\\./)?((tests/|bench/|docs/decisions|decisions/)[^)\n]*)\\)" "\\1" text "${text}")
  file(WRITE ${PROJECT_BINARY_DIR}/doc/${page} "${text}")
endforeach()
install(DIRECTORY ${PROJECT_BINARY_DIR}/doc/ DESTINATION ${orvanel_doc_folder} FILES_MATCHING PATTERN "*.md")
install(DIRECTORY docs/images DESTINATION ${orvanel_doc_folder}/docs FILES_MATCHING PATTERN "*.svg" PATTERN "*.png")
install(DIRECTORY examples DESTINATION ${orvanel_doc_folder})
install(DIRECTORY assets/eyes DESTINATION ${orvanel_doc_folder}/assets)
install(FILES assets/README.md DESTINATION ${orvanel_doc_folder}/assets)
install(FILES LICENSE ${orvanel_notices}/THIRD-PARTY-NOTICES ${orvanel_notices}/REQUIREMENTS
  DESTINATION ${orvanel_doc_folder})

set(orvanel_config_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Orvanel)
configure_package_config_file(cmake/OrvanelConfig.cmake.in OrvanelConfig.cmake
  INSTALL_DESTINATION ${orvanel_config_folder}
  NO_SET_AND_CHECK_MACRO)
# Before 1.0 a minor version may change the C++ interface.
write_basic_package_version_file(OrvanelConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(EXPORT OrvanelTargets NAMESPACE Orvanel:: DESTINATION ${orvanel_config_folder})
install(FILES ${PROJECT_BINARY_DIR}/OrvanelConfig.cmake ${PROJECT_BINARY_DIR}/OrvanelConfigVersion.cmake
  DESTINATION ${orvanel_config_folder})

# From the folder of orvanel.pc up to the prefix, so that the prefix may be moved.
set(orvanel_up ${CMAKE_INSTALL_PREFIX})
cmake_path(RELATIVE_PATH orvanel_up BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
set(orvanel_modules orvanel orvanel-optics)
if(TARGET orvanel_c)
  list(APPEND orvanel_modules orvanel-c)
endif()
foreach(module IN LISTS orvanel_modules)
  configure_file(cmake/${module}.pc.in ${module}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${module}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

if(WIN32)
  install(FILES docs/windows.md RENAME README.md DESTINATION .)
  install(FILES LICENSE ${orvanel_notices}/THIRD-PARTY-NOTICES DESTINATION .)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_SYSTEM_NAME windows-${CMAKE_SYSTEM_PROCESSOR})
else()
  set(CPACK_GENERATOR TGZ DEB)
endif()
set(CPACK_PACKAGE_NAME orvanel)
set(CPACK_PACKAGE_VENDOR Orvanel)
set(ORVANEL_MAINTAINER "The Orvanel authors <authors@orvanel.example>" CACHE STRING
  "Whom packages name as their maintainer: 'Name <address>'")
set(CPACK_PACKAGE_CONTACT ${ORVANEL_MAINTAINER})
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
include(OrvanelDebian)
include(CPack)
