# What is particular to a build for Linux. Darwin.cmake defines the same names.

include(GNUstep)
# Whose Cocoa it is, as sources for one of them are named.
set(cocoa GNUstep)
find_package(GTest REQUIRED)

# The rooms that are built beside the product.
set(platform_rooms Platform StandIns Tests/Support Benchmarks Fuzzing Tests)

# make_plugin_bundle(TARGET NAME FOLDER DIALOG.xib TABLE…): makes the module TARGET a bundle
# NAME.bundle with the property list, the dialog and the tables of texts that lie in FOLDER.
# GNUstep's bundles are plain folders, and its AppKit reads the xib itself.
function(make_plugin_bundle target name folder dialog)
  set(bundle ${CMAKE_BINARY_DIR}/${name}.bundle)
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME ${name} PREFIX "" SUFFIX "" LIBRARY_OUTPUT_DIRECTORY ${bundle})
  set(copies)
  foreach(resource IN ITEMS Info-gnustep.plist ${dialog} ${ARGN})
    set(source ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/${resource})
    set(copy ${bundle}/Resources/${resource})
    add_custom_command(OUTPUT ${copy}
      COMMAND ${CMAKE_COMMAND} -E copy ${source} ${copy}
      DEPENDS ${source} VERBATIM)
    list(APPEND copies ${copy})
  endforeach()
  add_custom_target(${target}Resources DEPENDS ${copies})
  add_dependencies(${target} ${target}Resources)
endfunction()

# make_application(TARGET NAME FOLDER): makes the executable TARGET a program that shows windows and
# takes part in Apple Events. Here it stays a plain program, which declares its signature by a call.
function(make_application target)
  target_link_libraries(${target} PRIVATE Platform)
  overlook_gnustep_leaks(${target})
endfunction()
