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
