# Defines the package for Debian.
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "simulation of what an aberrated eye sees")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Orvanel computes what an eye with a measured wavefront aberration sees, from
a pupil diameter and 28 Zernike coefficients: point spread function,
modulation transfer function, Strehl ratio, and retinal images of a broken
ring, a sector star or any picture.

This package has the program orvanel, the library libOrvanelDll.so with its C
interface, and the engine for C++ programs.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
if(WIN32)
  return()
endif()

# Debian's own copies of the licences and changes, and its overrides with reasons.
set(orvanel_debian ${PROJECT_BINARY_DIR}/debian)
add_custom_command(OUTPUT ${orvanel_debian}/copyright ${orvanel_debian}/changelog.Debian.gz ${orvanel_debian}/changelog.gz
  COMMAND ${PROJECT_SOURCE_DIR}/cmake/debian/make_files.sh ${PROJECT_SOURCE_DIR} ${orvanel_notices}/THIRD-PARTY-NOTICES
    ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE} ${ORVANEL_MAINTAINER} ${orvanel_debian}
  DEPENDS ${PROJECT_SOURCE_DIR}/cmake/debian/make_files.sh ${PROJECT_SOURCE_DIR}/LICENSE
    ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${orvanel_notices}/THIRD-PARTY-NOTICES orvanel_notices
  VERBATIM)
add_custom_target(orvanel_debian ALL DEPENDS ${orvanel_debian}/copyright)
# These are in no other archive: the generator for Debian adds their component.
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_BINARY_DIR}/CPackProjectConfig.cmake)
file(CONFIGURE OUTPUT CPackProjectConfig.cmake @ONLY CONTENT [[
if(CPACK_GENERATOR STREQUAL "DEB")
  list(APPEND CPACK_INSTALL_CMAKE_PROJECTS "@PROJECT_BINARY_DIR@" Orvanel debian /)
endif()
]])
install(FILES ${orvanel_debian}/copyright ${orvanel_debian}/changelog.Debian.gz ${orvanel_debian}/changelog.gz
  DESTINATION ${orvanel_doc_folder} COMPONENT debian EXCLUDE_FROM_ALL)
install(FILES cmake/debian/lintian-overrides RENAME orvanel
  DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT debian EXCLUDE_FROM_ALL)
