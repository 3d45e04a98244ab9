# One test executable a folder, every test of it known to CTest by its own name.
# A test that needs a main function of its own just has one: it wins over the library's.
#
# add_room_test(PROGRAM SOURCES … LINKS … [TIMEOUT SECONDS] [PROCESSES NUMBER [ALONE SUITE…]]):
# starting a process, GNUstep or the script machine takes most of the time of most tests. So where
# tests can share a process, PROCESSES says how many processes run all of them, but for those suites
# that want one ALONE for each test. Scripts/test has them run so, by CTest's configuration
# Together; without it CTest starts each test by its own name.
include(GoogleTest)
include(CompiledTogether)

# Compiling the tests takes longer than running them. So they are optimised less than the product,
# and name no lines to a debugger, which the debug preset is for; that takes a sixth off. GCC then
# sees too little of a program to say where an index or a length is wrong; the sanitizers see it.
# And what is tested is watched for undefined behaviour, the tests themselves for their memory only,
# which takes a third off the time of compiling them.
add_library(TestOptions INTERFACE)
target_compile_options(TestOptions INTERFACE
  $<IF:$<CONFIG:Debug>,-O0,-Og>
  $<$<NOT:$<CONFIG:Debug>>:-g0>
  $<$<BOOL:${KORVO_SANITIZE}>:-fno-sanitize=undefined>
  $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds -Wno-maybe-uninitialized -Wno-restrict
    -Wno-stringop-overflow -Wno-stringop-overread
    -Wno-subobject-linkage>
  # Sources that are compiled together see each other's local names, which hurts nobody.
  -Wno-shadow $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local>)

# Of what could be tried for ever, tests try less where the sanitizers watch.
# Tests/Support/Effort.h tells.
target_compile_definitions(TestOptions INTERFACE SANITIZED=$<BOOL:${KORVO_SANITIZE}>)

lend_headers(TestHeaders EXECUTABLE
  LINKS ProjectOptions TestOptions Cocoa::AppKit GTest::gmock GTest::gtest
  CXX gmock/gmock.h gtest/gtest.h
  # Of GoogleMock its matchers only: Documentation/Testing.md says why.
  OBJCXX Foundation/Foundation.h gmock/gmock-more-matchers.h gtest/gtest.h)

function(add_room_test name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "TIMEOUT;PROCESSES" "SOURCES;LINKS;ALONE")
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  compiled_together(sources ${name} ${ARG_SOURCES})
  add_executable(${name} ${sources})
  set_target_properties(${name} PROPERTIES OSX_ARCHITECTURES "${test_architectures}")
  target_link_libraries(${name} PRIVATE
    ProjectOptions TestOptions ${ARG_LINKS} GTest::gmock_main GTest::gmock GTest::gtest)
  borrow_headers(${name} TestHeaders)
  list(TRANSFORM ARG_ALONE APPEND ".*")
  list(JOIN ARG_ALONE ":" alone)
  set(discovery DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS)
  if(NOT ARG_PROCESSES)
    gtest_discover_tests(${name} ${discovery} ${name})
    return()
  endif()
  gtest_discover_tests(${name} TEST_FILTER "-${alone}" ${discovery} ${name}.shared)
  if(alone)
    gtest_discover_tests(${name} TEST_FILTER "${alone}" ${discovery} ${name})
  endif()
  foreach(part RANGE 1 ${ARG_PROCESSES})
    set(entry Together.${name}.${part})
    add_test(NAME ${entry} CONFIGURATIONS Together
      COMMAND ${CMAKE_SOURCE_DIR}/Scripts/Support/run-together $<TARGET_FILE:${name}>
        "-${alone}" ${part} ${ARG_PROCESSES} ${ARG_TIMEOUT}
        ${CMAKE_BINARY_DIR}/together/${entry}.json)
    set_tests_properties(${entry} PROPERTIES TIMEOUT 3000 LABELS ${name})
  endforeach()
endfunction()
