# A room is a folder of sources that others may use only by linking to its
# target. Its headers are reachable as <Folder/Header.h>, through a directory
# that holds nothing but a link to that one folder: who does not link to a room
# cannot include from it, so the build itself refuses a wrong dependency.
function(export_room_headers target visibility)
  set(root ${CMAKE_BINARY_DIR}/rooms/${target})
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${target} SYMBOLIC)
  target_include_directories(${target} ${visibility} ${root})
endfunction()
