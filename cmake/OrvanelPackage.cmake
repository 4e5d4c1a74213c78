# What others get: headers, documents and examples, the files by which CMake and pkg-config find the libraries, and
# archives of it all.
include(CMakePackageConfigHelpers)

install(DIRECTORY include/orvanel DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")

# The headers refer to the conventions.
set(orvanel_doc_folder ${CMAKE_INSTALL_DATADIR}/doc/orvanel)
install(FILES CHANGELOG.md docs/conventions.md DESTINATION ${orvanel_doc_folder})
install(FILES docs/images/conventions.svg docs/images/ring_scales.svg DESTINATION ${orvanel_doc_folder}/images)
install(DIRECTORY examples DESTINATION ${orvanel_doc_folder})
install(DIRECTORY assets/eyes DESTINATION ${orvanel_doc_folder}/assets)

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
configure_file(cmake/orvanel.pc.in orvanel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orvanel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(WIN32)
  install(FILES docs/windows.md RENAME README.md DESTINATION .)
  # Of what is linked in, by the names of Debian's packages.
  foreach(package fonts-dejavu-core gcc-mingw-w64-base libcli11-dev libstb-dev libz-mingw-w64-dev mingw-w64-common
          nlohmann-json3-dev)
    install(FILES /usr/share/doc/${package}/copyright RENAME ${package}.txt DESTINATION licences)
  endforeach()
  set(CPACK_GENERATOR ZIP)
  set(CPACK_SYSTEM_NAME windows-${CMAKE_SYSTEM_PROCESSOR})
else()
  set(CPACK_GENERATOR TGZ DEB)
endif()
set(CPACK_PACKAGE_NAME orvanel)
set(CPACK_PACKAGE_VENDOR Orvanel)
set(CPACK_PACKAGE_CONTACT "Orvanel maintainers <maintainers@orvanel.invalid>")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
include(CPack)
