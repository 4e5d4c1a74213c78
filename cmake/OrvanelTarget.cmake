# Defines the options of every target of this project, for all presets.

if(MINGW)
  # GCC assumes that the stack of Windows is aligned for wide registers, but it is not. The assembler replaces moves that
  # need alignment by moves that do not; it can do so since binutils 2.38.
  set(orvanel_mingw_options -Wa,-muse-unaligned-vector-move)
  # Without optimisation, the square root is a call to a C library that rounds differently.
  list(APPEND orvanel_mingw_options $<$<NOT:$<CONFIG:Release,RelWithDebInfo,MinSizeRel>>:-O1>)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # SSE2 arithmetic, as on 64 bits, so that the bits are the same. Hosts align the stack to only 4 bytes.
    list(APPEND orvanel_mingw_options -msse2 -mfpmath=sse -mstackrealign)
  endif()
endif()

# orvanel_target(<target>): C++20, only marked names are exported, and arithmetic gives the same bits everywhere. For this
# there is no fused multiply-add, and the square root is one instruction instead of a call that sets errno.
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
  if(MINGW)
    target_compile_options(${target} PRIVATE "$<$<COMPILE_LANGUAGE:C,CXX>:${orvanel_mingw_options}>")
  endif()
endfunction()

# orvanel_kernels(<target>): adds the vector kernels of this folder, kernels/variant.cpp, compiled once for each
# instruction set: a table of functions in orvanel::baseline, and so on. The baseline is what the compiler takes for any
# CPU of this kind.
function(orvanel_kernels target)
  orvanel_kernels_for(${target} baseline)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$" AND CMAKE_SIZEOF_VOID_P EQUAL 8)
    orvanel_kernels_for(${target} avx2 -mavx2)
    orvanel_kernels_for(${target} avx512 -mavx512f -mavx512dq -mavx512vl -mprefer-vector-width=512)
    target_compile_definitions(${target} PRIVATE ORVANEL_X86_KERNELS)
  endif()
endfunction()

# orvanel_kernels_for(<target> <name> [<flag>...]): those of one instruction set, which these flags allow.
function(orvanel_kernels_for target name)
  set(kernels ${target}_${name})
  add_library(${kernels} OBJECT kernels/variant.cpp)
  orvanel_target(${kernels})
  target_include_directories(${kernels} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
  target_compile_definitions(${kernels} PRIVATE ORVANEL_VARIANT=${name})
  target_compile_options(${kernels} PRIVATE ${ARGN})
  if(ORVANEL_FUZZ)
    # The fuzzer tests calls and buffers, which have their own guards. It would spend its time in instrumented arithmetic.
    # The preset "sanitize" replays the corpus with everything instrumented.
    target_compile_options(${kernels} PRIVATE -fno-sanitize=all -O2)
  endif()
  target_sources(${target} PRIVATE $<TARGET_OBJECTS:${kernels}>)
  set_property(TARGET ${target} APPEND PROPERTY ORVANEL_KERNEL_OBJECTS ${kernels})
endfunction()

# orvanel_fuzzed_arithmetic(<target>): comparisons in this target do not call the fuzzer. They compare millions of
# samples, whose values do not help the fuzzer. Edges are counted as usual, and readers of files keep their comparisons,
# which are useful hints.
function(orvanel_fuzzed_arithmetic target)
  if(ORVANEL_FUZZ)
    target_compile_options(${target} PRIVATE -fno-sanitize-coverage=trace-cmp)
  endif()
endfunction()

# orvanel_layer(<name> SOURCES <file>... [USES <layer>...]): the static library orvanel_<name> of one folder. It finds the
# headers of the layers below it; guards check that these are the only ones.
function(orvanel_layer name)
  cmake_parse_arguments(arg "" "" "SOURCES;USES" ${ARGN})
  add_library(orvanel_${name} STATIC ${arg_SOURCES})
  orvanel_target(orvanel_${name})
  orvanel_fuzzed_arithmetic(orvanel_${name})
  # The archives that are installed have these names.
  set_target_properties(orvanel_${name} PROPERTIES ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}/layers)
  target_include_directories(orvanel_${name} PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
  list(TRANSFORM arg_USES PREPEND orvanel_)
  target_link_libraries(orvanel_${name} PUBLIC ${arg_USES})
endfunction()

# orvanel_library(<target> <name>): a library of the package, Orvanel::<name> both here and in an
# installation. Its users get the headers and none of our flags.
function(orvanel_library target name)
  orvanel_target(${target})
  orvanel_fuzzed_arithmetic(${target})
  add_library(Orvanel::${name} ALIAS ${target})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  target_include_directories(${target}
    PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    PRIVATE ${PROJECT_SOURCE_DIR})
  install(TARGETS ${target} EXPORT OrvanelTargets INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endfunction()

# orvanel_archive(<name> <layer>...): the static library orvanel_<name> of the package, with the objects of these layers.
function(orvanel_archive name)
  set(archive orvanel_${name}_archive)
  add_library(${archive} STATIC)
  orvanel_library(${archive} ${name})
  set_target_properties(${archive} PROPERTIES OUTPUT_NAME orvanel_${name} LINKER_LANGUAGE CXX)
  foreach(layer IN LISTS ARGN)
    target_sources(${archive} PRIVATE $<TARGET_OBJECTS:orvanel_${layer}>)
    get_target_property(kernels orvanel_${layer} ORVANEL_KERNEL_OBJECTS)
    if(kernels)
      list(TRANSFORM kernels REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>")
      target_sources(${archive} PRIVATE ${kernels})
    endif()
  endforeach()
endfunction()

# orvanel_embed(<target> <symbol> <file>): the bytes of the file become part of the target as
# `extern "C" const unsigned char <symbol>[]`, followed by `<symbol>_end[]`.
function(orvanel_embed target symbol file)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${symbol}.S)
  set(section .rodata)
  set(end_of_source ".section .note.GNU-stack,\"\",%progbits")
  set(name ${symbol})
  if(WIN32)
    set(section ".rdata,\"dr\"")
    set(end_of_source "")
    if(CMAKE_SIZEOF_VOID_P EQUAL 4)
      set(name _${symbol})  # as C names are written there
    endif()
  endif()
  file(CONFIGURE OUTPUT ${source} @ONLY CONTENT [[
.section @section@
.balign 16
.global @name@
.global @name@_end
@name@:
.incbin "@file@"
@name@_end:
.byte 0
@end_of_source@
]])
  set_source_files_properties(${source} PROPERTIES OBJECT_DEPENDS ${file})
  target_sources(${target} PRIVATE ${source})
endfunction()
