# Cocoa on Linux: GNUstep's compile flags and libraries as the targets Cocoa::Foundation and
# Cocoa::AppKit. Its headers are made system headers: they do not compile without warnings.
find_program(GNUSTEP_CONFIG gnustep-config REQUIRED)

function(gnustep_query result)
  execute_process(COMMAND ${GNUSTEP_CONFIG} ${ARGN}
    OUTPUT_VARIABLE output OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  # It asks make for its answers, and without make says nothing and succeeds.
  if(output STREQUAL "")
    message(FATAL_ERROR "gnustep-config ${ARGN} says nothing: is make installed?")
  endif()
  separate_arguments(output UNIX_COMMAND "${output}")
  set(${result} ${output} PARENT_SCOPE)
endfunction()

gnustep_query(gnustep_objc_flags --objc-flags)
gnustep_query(gnustep_base_libraries --base-libs)
gnustep_query(gnustep_gui_libraries --gui-libs)

set(gnustep_include_directories)
set(gnustep_flags)
foreach(flag IN LISTS gnustep_objc_flags)
  if(flag MATCHES "^-I(.+)")
    if(NOT CMAKE_MATCH_1 STREQUAL "." AND IS_DIRECTORY ${CMAKE_MATCH_1})
      list(APPEND gnustep_include_directories ${CMAKE_MATCH_1})
    endif()
  elseif(flag MATCHES "^-D|^-fobjc|^-fexceptions|^-fconstant|^-pthread")
    list(APPEND gnustep_flags ${flag})
  endif()
endforeach()

# Debian 13's names /usr/include as well. Named among the system headers it would stand before C++'s
# own, which look for C's behind themselves.
list(REMOVE_ITEM gnustep_include_directories
  /usr/include ${CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES})

foreach(kind IN ITEMS Foundation AppKit)
  add_library(Cocoa::${kind} INTERFACE IMPORTED)
  target_include_directories(Cocoa::${kind} SYSTEM INTERFACE ${gnustep_include_directories})
  target_compile_options(Cocoa::${kind} INTERFACE
    $<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:${gnustep_flags}>)
endforeach()
target_link_libraries(Cocoa::Foundation INTERFACE ${gnustep_base_libraries})
target_link_libraries(Cocoa::AppKit INTERFACE ${gnustep_gui_libraries})

# For executables that load GNUstep: leaks are looked for in the others.
function(overlook_gnustep_leaks)
  foreach(target IN LISTS ARGN)
    target_sources(${target} PRIVATE ${CMAKE_SOURCE_DIR}/CMake/OverlookGNUstepLeaks.cpp)
  endforeach()
endfunction()
