# What nearly every source includes is read once a build: reading it takes more than half of the
# time of compiling a room's source, and a fourth of a test's. For GCC, whose precompiled headers
# serve every target that compiles for the same kind of object; elsewhere nothing of this has an
# effect.
#
# A source still includes what it uses: Scripts/lint looks, and other compilers insist.

# lend_headers(LENDER TYPE LINKS TARGET… CXX HEADER… OBJCXX HEADER…): a target that is there to be
# lent from. TYPE is what add_library takes, or EXECUTABLE: what is read for a library does not suit
# a program.
function(lend_headers lender type)
  cmake_parse_arguments(PARSE_ARGV 2 ARG "" "" "LINKS;CXX;OBJCXX")
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    return()
  endif()
  set(sources)
  foreach(ending IN ITEMS cpp mm)
    set(source ${CMAKE_CURRENT_BINARY_DIR}/${lender}/${ending}/Lent.${ending})
    set(content "// Lends its headers: CMake/PrecompiledHeaders.cmake says why.\n")
    if(type STREQUAL "EXECUTABLE" AND ending STREQUAL "cpp")
      string(APPEND content "int main() { return 0; }\n")
    endif()
    file(CONFIGURE OUTPUT ${source} CONTENT "${content}")
    list(APPEND sources ${source})
  endforeach()
  if(type STREQUAL "EXECUTABLE")
    add_executable(${lender} ${sources})
  else()
    add_library(${lender} ${type} ${sources})
  endif()
  target_link_libraries(${lender} PRIVATE ${ARG_LINKS})
  # GNUstep and some libraries ask for it, and it changes what the headers say: so it is for all.
  target_compile_options(${lender} PRIVATE -pthread)
  foreach(language IN ITEMS CXX OBJCXX)
    foreach(header IN LISTS ARG_${language})
      target_precompile_headers(${lender} PRIVATE
        "$<$<COMPILE_LANGUAGE:${language}>:<${header}$<ANGLE-R>>")
    endforeach()
  endforeach()
endfunction()

# borrow_headers(TARGET LENDER): the target's C++ and Objective-C++ begins with what LENDER lends.
function(borrow_headers target lender)
  if(NOT TARGET ${lender})
    return()
  endif()
  target_precompile_headers(${target} REUSE_FROM ${lender})
  target_compile_options(${target} PRIVATE -pthread)
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "\\.m$")
  set_source_files_properties(${sources} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
endfunction()
