# Libraries that are headers alone.

# orvanel_find_headers(<package> <target> <folder>): the target of the package, whose headers are those of <folder>/.
# Where we build for another system its headers serve as well, but not what stands beside them: the compiler sees a
# folder that holds a link to theirs and nothing else.
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
