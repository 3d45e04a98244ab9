# What is particular to a build for macOS. Linux.cmake defines the same names.

include(Cocoa)
include(Signing)
find_program(IBTOOL ibtool REQUIRED)

# Beside the product, a Mac builds the tool for conversations, and what tests the product there, as
# far as it has what they take.
set(platform_rooms StandIns/Terminal Tools/AppleEvents)
find_package(GTest)
if(GTest_FOUND)
  find_package(EXPAT)
  find_package(nlohmann_json)
  if(EXPAT_FOUND AND nlohmann_json_FOUND)
    list(APPEND platform_rooms Tests/Support Tests/Formats)
  endif()
endif()
list(APPEND platform_rooms Tests/MacOS/Handshake Tests/MacOS/Dialog)

# GoogleTest, as people install it, is there for the processor of their Mac alone.
set(test_architectures ${CMAKE_HOST_SYSTEM_PROCESSOR})

# make_plugin_bundle(TARGET NAME FOLDER DIALOG.xib TABLE…): makes the module TARGET a bundle
# NAME.bundle with the property list, the dialog and the tables of texts that lie in FOLDER.
function(make_plugin_bundle target name folder dialog)
  set(source ${CMAKE_CURRENT_SOURCE_DIR}/${folder})
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME ${name} PREFIX "" BUNDLE TRUE BUNDLE_EXTENSION bundle
    MACOSX_BUNDLE_INFO_PLIST ${source}/Info.plist
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
  cmake_path(REPLACE_EXTENSION dialog .nib OUTPUT_VARIABLE nib)
  set(nib ${CMAKE_CURRENT_BINARY_DIR}/${nib})
  add_custom_command(OUTPUT ${nib}
    COMMAND ${IBTOOL} --errors --warnings --notices
      --minimum-deployment-target ${CMAKE_OSX_DEPLOYMENT_TARGET}
      --compile ${nib} ${source}/${dialog}
    DEPENDS ${source}/${dialog} COMMENT "Compiling ${dialog}" VERBATIM)
  sign_anew_after(${target} ${PROJECT_SOURCE_DIR}/CMakeLists.txt ${source}/Info.plist)
  set(bundle ${CMAKE_BINARY_DIR}/${name}.bundle)
  put_into_bundle(${target} ${bundle} Resources ${nib})
  foreach(table IN LISTS ARGN)
    cmake_path(GET table PARENT_PATH language)
    put_into_bundle(${target} ${bundle} Resources/${language} ${source}/${table})
  endforeach()
  sign(${target})
  # The prefix is the folder in which the host looks for its plug-ins.
  install(TARGETS ${target} LIBRARY DESTINATION . COMPONENT plugin)
endfunction()

# install_program(TARGET): nothing here. On a Mac what is installed is the plug-in, into the folder
# where its host looks for it; programs run from where they were built.
function(install_program)
endfunction()

# make_application(TARGET NAME FOLDER): makes the executable TARGET an application NAME.app with the
# property list and the entitlements that lie in FOLDER. The property list declares its signature.
function(make_application target name folder)
  cmake_path(ABSOLUTE_PATH folder NORMALIZE OUTPUT_VARIABLE source)
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME ${name} MACOSX_BUNDLE TRUE
    MACOSX_BUNDLE_INFO_PLIST ${source}/Info.plist)
  sign_anew_after(${target} ${PROJECT_SOURCE_DIR}/CMakeLists.txt ${source}/Info.plist
    ${source}/${name}.entitlements)
  sign(${target} --entitlements ${source}/${name}.entitlements)
endfunction()

# A signature covers more than the code: when one of these files has changed, such as the one that
# holds the version, the target is linked, and so signed, anew.
function(sign_anew_after target)
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${ARGN})
endfunction()

function(put_into_bundle target bundle place file)
  target_sources(${target} PRIVATE ${file})
  set_source_files_properties(${file} PROPERTIES MACOSX_PACKAGE_LOCATION ${place})
  cmake_path(GET file FILENAME name)
  sign_anew_after(${target} ${bundle}/Contents/${place}/${name})
endfunction()
