# What every target of this project needs, whatever preset builds it.

# orvanel_target(<target>): C++20, no exported names but the marked ones, and arithmetic that gives the same bits
# everywhere: no fused multiply-add, and the square root as one instruction instead of a call that sets errno.
function(orvanel_target target)
  target_compile_features(${target} PRIVATE cxx_std_20)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    C_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  target_compile_options(${target} PRIVATE
    $<$<COMPILE_LANGUAGE:C,CXX>:-ffp-contract=off -fno-math-errno>)
endfunction()

# orvanel_library(<target> <name>): a library of the package, Orvanel::<name> both here and for those who find it
# installed. They get the headers and none of our flags.
function(orvanel_library target name)
  orvanel_target(${target})
  add_library(Orvanel::${name} ALIAS ${target})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  target_include_directories(${target}
    PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    PRIVATE ${PROJECT_SOURCE_DIR})
  install(TARGETS ${target} EXPORT OrvanelTargets INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endfunction()

# orvanel_install_program(<target>): the program finds the shared library from its own place, wherever the two are moved.
function(orvanel_install_program target)
  set(libraries ${CMAKE_INSTALL_FULL_LIBDIR})
  cmake_path(RELATIVE_PATH libraries BASE_DIRECTORY ${CMAKE_INSTALL_FULL_BINDIR})
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
  install(TARGETS ${target})
endfunction()

# orvanel_embed(<target> <symbol> <file>): the bytes of the file become part of the target as
# `extern "C" const unsigned char <symbol>[]`, followed by `<symbol>_end[]`.
function(orvanel_embed target symbol file)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${symbol}.S)
  file(CONFIGURE OUTPUT ${source} @ONLY CONTENT [[
.section .rodata
.balign 16
.global @symbol@
.global @symbol@_end
@symbol@:
.incbin "@file@"
@symbol@_end:
.byte 0
.section .note.GNU-stack,"",%progbits
]])
  set_source_files_properties(${source} PROPERTIES OBJECT_DEPENDS ${file})
  target_sources(${target} PRIVATE ${source})
endfunction()
