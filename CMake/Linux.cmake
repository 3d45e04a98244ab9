# What is particular to a build for Linux. Darwin.cmake defines the same names.

include(GNUstep)
include(Installation)
find_package(GTest REQUIRED)

# The rooms that are built beside the product.
set(platform_rooms
  Platform StandIns Tools/AppleEvents Packaging Tests/Support Benchmarks Fuzzing Tests)

# make_plugin_bundle(TARGET NAME FOLDER DIALOG.xib TABLE…): makes the module TARGET a bundle
# NAME.bundle with the property list, the dialog and the tables of texts that lie in FOLDER.
# GNUstep's bundles are plain folders, and its AppKit reads the xib itself.
function(make_plugin_bundle target name folder dialog)
  set(bundle ${CMAKE_BINARY_DIR}/${name}.bundle)
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME ${name} PREFIX "" SUFFIX "" LIBRARY_OUTPUT_DIRECTORY ${bundle})
  # The property list names the project's version.
  configure_file(${folder}/Info-gnustep.plist ${bundle}/Resources/Info-gnustep.plist)
  set(copies)
  foreach(resource IN ITEMS ${dialog} ${ARGN})
    set(source ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/${resource})
    # GNUstep's list of languages has two codes for Hebrew and knows the older one alone. It finds
    # each language by its English name, too.
    string(REGEX REPLACE "^he\\.lproj/" "Hebrew.lproj/" name ${resource})
    set(copy ${bundle}/Resources/${name})
    set(make_copy ${CMAKE_COMMAND} -E copy ${source} ${copy})
    if(resource MATCHES "\\.strings$")
      # GNUstep 1.28 takes a table without a byte order mark for one in the locale's encoding.
      set(make_copy iconv -f UTF-8 -t UTF-16 -o ${copy} ${source})
    endif()
    cmake_path(GET copy PARENT_PATH folder_of_copy)
    add_custom_command(OUTPUT ${copy}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${folder_of_copy}
      COMMAND ${make_copy}
      DEPENDS ${source} VERBATIM)
    list(APPEND copies ${copy})
  endforeach()
  add_custom_target(${target}Resources DEPENDS ${copies})
  add_dependencies(${target} ${target}Resources)
  install_bundle(${target} ${bundle})
endfunction()

# make_application(TARGET NAME FOLDER): makes the executable TARGET a program that shows windows and
# takes part in Apple Events. Here it stays a plain program, which declares its signature by a call.
function(make_application target)
  target_link_libraries(${target} PRIVATE Platform)
  overlook_gnustep_leaks(${target})
endfunction()
