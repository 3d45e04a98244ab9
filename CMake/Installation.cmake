# What `cmake --install` puts where, below any prefix; nothing of it knows the prefix.
#
# Programs that look for other files of ours lie with these in one folder, which is laid out as the
# build folder is: korvo finds its library, the plug-in and korvo-reader by the same steps in both,
# and wherever the whole was moved to. On the path there is a link to it.
set(folder_of_own lib/korvo-mellel)

# finds_libraries(TARGET): from a program in bin/, or from the module in its bundle. They are linked
# so at once: to change it when it is installed, CMake would make room with empty paths, and an
# empty path is whatever folder somebody works in.
function(finds_libraries target)
  set_target_properties(${target} PROPERTIES
    BUILD_WITH_INSTALL_RPATH TRUE INSTALL_RPATH "$ORIGIN/../lib")
endfunction()

# Builds all that is installed.
add_custom_target(Installed)

# install_program(TARGET [BESIDE_ITS_FILES]): the program with its man page and its completions, as
# the component of its name. BESIDE_ITS_FILES: it looks for files of ours.
function(install_program target)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "BESIDE_ITS_FILES" "" "")
  add_dependencies(Installed ${target})
  if(ARG_BESIDE_ITS_FILES)
    finds_libraries(${target})
    install(TARGETS ${target} RUNTIME DESTINATION ${folder_of_own}/bin COMPONENT ${target})
    set(link ${CMAKE_BINARY_DIR}/installed/bin/${target})
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/installed/bin)
    file(CREATE_LINK ../${folder_of_own}/bin/${target} ${link} SYMBOLIC)
    install(FILES ${link} DESTINATION bin COMPONENT ${target})
  else()
    install(TARGETS ${target} RUNTIME DESTINATION bin COMPONENT ${target})
  endif()
  # The page names the project's version.
  set(page ${CMAKE_BINARY_DIR}/installed/man/${target}.1)
  configure_file(${CMAKE_SOURCE_DIR}/Documentation/ManPages/${target}.1 ${page} @ONLY)
  install(FILES ${page} DESTINATION share/man/man1 COMPONENT ${target})
  set(completions ${CMAKE_SOURCE_DIR}/Packaging/Completions)
  install(FILES ${completions}/${target}.bash RENAME ${target}
    DESTINATION share/bash-completion/completions COMPONENT ${target})
  install(FILES ${completions}/_${target}
    DESTINATION share/zsh/site-functions COMPONENT ${target})
  set_property(GLOBAL APPEND PROPERTY installed_programs ${target})
endfunction()

# install_beside(COMPONENT TARGET…): programs that another one starts, and libraries; neither looks
# for anything of ours.
function(install_beside component)
  add_dependencies(Installed ${ARGN})
  install(TARGETS ${ARGN}
    RUNTIME DESTINATION ${folder_of_own}/bin COMPONENT ${component}
    LIBRARY DESTINATION ${folder_of_own}/lib COMPONENT ${component})
endfunction()

# install_bundle(TARGET BUNDLE): the module with what lies in the bundle's Resources.
function(install_bundle target bundle)
  add_dependencies(Installed ${target})
  cmake_path(GET bundle FILENAME name)
  finds_libraries(${target})
  install(TARGETS ${target} LIBRARY DESTINATION ${folder_of_own}/${name} COMPONENT plugin)
  install(DIRECTORY ${bundle}/Resources DESTINATION ${folder_of_own}/${name} COMPONENT plugin)
endfunction()
