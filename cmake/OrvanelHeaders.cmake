# Finds libraries that have only headers.

# orvanel_find_headers(<package> <target> <folder>): the target of the package, whose headers are those of <folder>/.
# When we build for another system, these headers are correct too, but others in the same folder are not. Therefore the
# compiler gets a folder that has only a link to these headers.
function(orvanel_find_headers package target folder)
  if(NOT CMAKE_CROSSCOMPILING)
    find_package(${package} REQUIRED)
    return()
  endif()
  find_path(${package}_INCLUDE_DIR ${folder} PATHS /usr/include REQUIRED NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  set(links ${PROJECT_BINARY_DIR}/headers)
  file(MAKE_DIRECTORY ${links})
  file(CREATE_LINK ${${package}_INCLUDE_DIR}/${folder} ${links}/${folder} SYMBOLIC)
  add_library(${target} INTERFACE IMPORTED)
  target_include_directories(${target} SYSTEM INTERFACE ${links})
endfunction()
