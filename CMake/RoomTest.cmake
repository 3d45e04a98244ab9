# One test executable a folder, every test of it known to CTest by its own name.
# A test that needs a main function of its own just has one: it wins over the library's.
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
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "TIMEOUT" "SOURCES;LINKS")
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  compiled_together(sources ${name} ${ARG_SOURCES})
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE
    ProjectOptions TestOptions ${ARG_LINKS} GTest::gmock_main GTest::gmock GTest::gtest)
  borrow_headers(${name} TestHeaders)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS ${name})
endfunction()
