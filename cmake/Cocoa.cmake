# The target `cocoa`: Cocoa on macOS, GNUstep (the same frameworks) elsewhere, for Objective-C++ sources.
# `foundation` is the same without AppKit.

# GNUstep's Objective-C is GCC's: exceptions do not cross code of another compiler.
if(NOT APPLE)
  find_program(CMAKE_OBJC_COMPILER gcc REQUIRED)
  find_program(CMAKE_OBJCXX_COMPILER g++ REQUIRED)
endif()
enable_language(OBJC)
enable_language(OBJCXX)

add_library(cocoa INTERFACE)
add_library(foundation INTERFACE)
# Names the source file of each pair in platform/cocoa that holds for this system.
set(COCOA_SYSTEM gnustep)
if(APPLE)
  set(COCOA_SYSTEM mac)
  target_link_libraries(cocoa INTERFACE "-framework Cocoa" "-framework ApplicationServices")
  # The calls are those of the oldest system the program is meant for.
  target_compile_options(cocoa INTERFACE -Wno-deprecated-declarations)
  target_link_libraries(foundation INTERFACE "-framework Foundation")
  return()
endif()

find_program(GNUSTEP_CONFIG gnustep-config REQUIRED)
function(gnustep_flags target libs)
  execute_process(COMMAND ${GNUSTEP_CONFIG} --objc-flags OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE)
  execute_process(COMMAND ${GNUSTEP_CONFIG} ${libs} OUTPUT_VARIABLE link OUTPUT_STRIP_TRAILING_WHITESPACE)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  separate_arguments(link UNIX_COMMAND "${link}")
  set(includes ${flags})
  list(FILTER includes INCLUDE REGEX "^-I/")
  list(TRANSFORM includes REPLACE "^-I" "")
  list(FILTER flags EXCLUDE REGEX "^(-I.*|-O.*|-g|-MMD|-MP|-Wall)$")
  # SYSTEM: the framework's headers raise over a thousand warnings under ours. CMake 3.25 knows no OBJC or
  # OBJCXX standard for GCC, hence -std; without cxx-cdtors C++ instance variables are not constructed.
  target_include_directories(${target} SYSTEM INTERFACE ${includes})
  target_compile_options(${target} INTERFACE
    "$<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:${flags}>"
    "$<$<COMPILE_LANGUAGE:OBJC>:-std=c11>"
    "$<$<COMPILE_LANGUAGE:OBJCXX>:-std=c++20;-fobjc-call-cxx-cdtors>")
  target_link_libraries(${target} INTERFACE ${link})
endfunction()
gnustep_flags(cocoa --gui-libs)
gnustep_flags(foundation --base-libs)
