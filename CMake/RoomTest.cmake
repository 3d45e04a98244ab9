# One test executable a folder, every test of it known to CTest by its own name.
# A test that needs a main function of its own just has one: it wins over the library's.
include(GoogleTest)

# Compiling the tests takes longer than running them. So they are optimised less than the product,
# which takes a sixth off. At -O1 GCC sees too little of a program to say where an index or a length
# is wrong; the sanitizers see it.
add_library(TestOptions INTERFACE)
target_compile_options(TestOptions INTERFACE
  $<IF:$<CONFIG:Debug>,-O0,-O1>
  $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds -Wno-maybe-uninitialized -Wno-restrict
    -Wno-stringop-overflow -Wno-stringop-overread>)

# And GCC reads the headers of GoogleTest once for all of them, which takes a third off. It keeps
# what it read for one language: Objective-C++ reads them by itself. TestHeaders is there to be lent
# from: a program, as what is read for a library does not suit one; with -pthread, which some of the
# libraries ask for, so that all tests need it.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(TestOptions INTERFACE -pthread)
  file(CONFIGURE OUTPUT TestHeaders.cpp CONTENT
    "// Lends its headers: CMake/RoomTest.cmake says why.\nint main() { return 0; }\n")
  add_executable(TestHeaders ${CMAKE_CURRENT_BINARY_DIR}/TestHeaders.cpp)
  target_link_libraries(TestHeaders PRIVATE
    ProjectOptions TestOptions GTest::gmock GTest::gtest)
  target_precompile_headers(TestHeaders PRIVATE
    "$<$<COMPILE_LANGUAGE:CXX>:<gmock/gmock.h$<ANGLE-R>>"
    "$<$<COMPILE_LANGUAGE:CXX>:<gtest/gtest.h$<ANGLE-R>>")
endif()

function(add_room_test name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "TIMEOUT" "SOURCES;LINKS")
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE
    ProjectOptions TestOptions ${ARG_LINKS} GTest::gmock_main GTest::gmock GTest::gtest)
  if(TARGET TestHeaders)
    target_precompile_headers(${name} REUSE_FROM TestHeaders)
    list(FILTER ARG_SOURCES INCLUDE REGEX "\\.mm$")
    set_source_files_properties(${ARG_SOURCES} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS ${name})
endfunction()
