# Most of the time of compiling a test goes into what its headers make of templates, once a source.
# So a test program's sources are compiled some at a time, by a source that includes them: that
# takes half of the time.
#
# What is local to one of them is seen by those behind it. Where that does not go, the compiler says
# so, and another name helps. Properties of a single source have no effect: definitions belong to
# the program.

# compiled_together(RESULT PROGRAM SOURCE…): what the program compiles in place of the sources.
function(compiled_together result program)
  set(at_a_time 6)
  set(compiled)
  foreach(ending IN ITEMS cpp mm)
    set(sources ${ARGN})
    list(FILTER sources INCLUDE REGEX "\\.${ending}$")
    set(number 0)
    while(sources)
      math(EXPR number "${number} + 1")
      list(SUBLIST sources 0 ${at_a_time} batch)
      list(REMOVE_ITEM sources ${batch})
      set(includes "// Scripts/lint reads the sources that this includes each by itself.\n")
      foreach(source IN LISTS batch)
        cmake_path(ABSOLUTE_PATH source NORMALIZE)
        string(APPEND includes "#include \"${source}\"\n")
      endforeach()
      set(together ${CMAKE_CURRENT_BINARY_DIR}/${program}.together/${number}.${ending})
      file(CONFIGURE OUTPUT ${together} CONTENT "${includes}" @ONLY)
      list(APPEND compiled ${together})
    endwhile()
  endforeach()
  set(${result} ${compiled} PARENT_SCOPE)
endfunction()
