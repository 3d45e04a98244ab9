# One test executable a folder, every test of it known to CTest by its own name.
# A test that needs a main function of its own just has one: it wins over the library's.
include(GoogleTest)

function(add_room_test name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "TIMEOUT" "SOURCES;LINKS")
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE
    ProjectOptions ${ARG_LINKS} GTest::gmock_main GTest::gmock GTest::gtest)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS ${name})
endfunction()
