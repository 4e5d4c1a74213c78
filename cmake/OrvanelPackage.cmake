# What others get: headers, documents and examples, the files by which CMake and pkg-config find the libraries, and
# archives of it all.
include(CMakePackageConfigHelpers)

install(DIRECTORY include/orvanel DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")

# The headers refer to the conventions.
set(orvanel_doc_folder ${CMAKE_INSTALL_DATADIR}/doc/orvanel)
install(FILES CHANGELOG.md docs/conventions.md DESTINATION ${orvanel_doc_folder})
install(FILES docs/images/conventions.svg DESTINATION ${orvanel_doc_folder}/images)
install(DIRECTORY examples DESTINATION ${orvanel_doc_folder})

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

set(CPACK_GENERATOR TGZ DEB)
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
