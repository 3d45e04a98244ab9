# A room is a folder of sources that others may use only by linking to its target. Its headers are
# reachable by the path of the folder, <Formats/Unicode.h> or <StandIns/Korvo/Engine/TextFile.h>,
# through a directory that holds nothing but links into that one folder: who does not link to a room
# cannot include from it, so the build itself refuses a wrong dependency.

set(common_headers
  algorithm array chrono cstddef cstdint cstring expected filesystem functional map memory optional
  span string string_view unordered_map utility vector)
lend_headers(RoomHeaders OBJECT
  LINKS ProjectOptions Cocoa::AppKit
  CXX ${common_headers}
  OBJCXX Cocoa/Cocoa.h ${common_headers})

# room_headers(TARGET [PUBLIC HEADER…]) exports the headers named, or all of the folder. Where some
# are named, the others are the room's inside. TARGETInside reaches them all: it is for the room's
# own sources and for the tests of the inside, and links nothing by itself.
function(room_headers target)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "PUBLIC")
  get_target_property(type ${target} TYPE)
  set(visibility PUBLIC)
  if(type STREQUAL "INTERFACE_LIBRARY")
    set(visibility INTERFACE)
  else()
    borrow_headers(${target} RoomHeaders)
  endif()
  room_links(${target} whole)
  set(everything ${CMAKE_BINARY_DIR}/rooms/${target}/whole)
  if(NOT ARG_PUBLIC)
    target_include_directories(${target} ${visibility} ${everything})
    return()
  endif()
  room_links(${target} public ${ARG_PUBLIC})
  target_include_directories(${target} ${visibility} ${CMAKE_BINARY_DIR}/rooms/${target}/public)
  add_library(${target}Inside INTERFACE)
  target_include_directories(${target}Inside INTERFACE ${everything})
  target_link_libraries(${target} PRIVATE ${target}Inside)
endfunction()

# Makes the directory of links: to the headers named, or to the whole folder.
function(room_links target kind)
  file(RELATIVE_PATH folder ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  set(link ${CMAKE_BINARY_DIR}/rooms/${target}/${kind}/${folder})
  # Made anew, so that a header that is public no longer cannot be included any longer either.
  file(REMOVE_RECURSE ${CMAKE_BINARY_DIR}/rooms/${target}/${kind})
  if(NOT ARGN)
    cmake_path(GET link PARENT_PATH parent)
    file(MAKE_DIRECTORY ${parent})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${link} SYMBOLIC)
    return()
  endif()
  foreach(header IN LISTS ARGN)
    cmake_path(GET header PARENT_PATH parent)
    file(MAKE_DIRECTORY ${link}/${parent})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${header} ${link}/${header} SYMBOLIC)
  endforeach()
endfunction()
