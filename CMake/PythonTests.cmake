# A file of Python's unittest, each test of it known to CTest by its own name.
#
# add_python_tests(LABEL [ARGUMENTS …] [TIMEOUT SECONDS] [PROPERTIES …]): the tests of LABEL.py. The
# file is called with the ARGUMENTS and, behind them, the test's name.
find_package(Python3 REQUIRED COMPONENTS Interpreter)

function(add_python_tests label)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "TIMEOUT" "ARGUMENTS;PROPERTIES")
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  set(test_file ${CMAKE_CURRENT_SOURCE_DIR}/${label}.py)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${test_file})
  file(STRINGS ${test_file} definitions REGEX "^(class|    def test_)")
  foreach(definition IN LISTS definitions)
    if(definition MATCHES "^class ([A-Za-z]+)")
      set(suite ${CMAKE_MATCH_1})
    elseif(definition MATCHES "def (test_[a-z0-9_]+)")
      set(name ${suite}.${CMAKE_MATCH_1})
      add_test(NAME ${name}
        COMMAND Python3::Interpreter -B ${test_file} ${ARG_ARGUMENTS} ${name})
      set_tests_properties(${name} PROPERTIES
        TIMEOUT ${ARG_TIMEOUT} LABELS ${label} ${ARG_PROPERTIES})
    endif()
  endforeach()
endfunction()
