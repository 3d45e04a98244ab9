# add_fuzz_target(<Target> SOURCES … LINKS … UNDER_TEST … [OBJECTS …]): see Fuzzing/CMakeLists.txt.
# UNDER_TEST names the sources whose coverage Scripts/fuzz reports, OBJECTS what holds them if that
# is not the program itself.
# The program is ${<Target>_program}.
function(add_fuzz_target name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LINKS;UNDER_TEST;OBJECTS")
  set(support ${CMAKE_SOURCE_DIR}/Fuzzing/Support)
  set(corpus ${CMAKE_SOURCE_DIR}/Fuzzing/Corpora/${name}.txt)
  if(KORVO_FUZZ)
    set(program ${name}Fuzzer)
    add_executable(${program} ${ARG_SOURCES} ${support}/LibFuzzer.cpp)
    target_link_options(${program} PRIVATE -fsanitize=fuzzer)
    add_dependencies(Fuzzers ${program})
    add_dependencies(${program} CorpusTool)
    list(TRANSFORM ARG_UNDER_TEST PREPEND ${CMAKE_SOURCE_DIR}/)
    list(JOIN ARG_UNDER_TEST "\n" under_test)
    file(WRITE ${CMAKE_BINARY_DIR}/fuzzing/${name}.sources "${under_test}\n")
    set(objects ${ARG_OBJECTS})
    if(NOT objects)
      set(objects $<TARGET_FILE:${program}>)
    endif()
    file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/fuzzing/${name}.objects CONTENT "${objects}\n")
  else()
    set(program ${name}Corpus)
    add_executable(${program} ${ARG_SOURCES} ${support}/ReplayCorpus.cpp)
    target_link_libraries(${program} PRIVATE CorpusFile)
    add_test(NAME Corpus.${name} COMMAND ${program} ${corpus})
    set_tests_properties(Corpus.${name} PROPERTIES LABELS Corpus TIMEOUT 120)
  endif()
  # The run time of libFuzzer comes with clang: g++, which compiles the Objective-C++, cannot link
  # it.
  set_target_properties(${program} PROPERTIES LINKER_LANGUAGE CXX)
  target_link_libraries(${program} PRIVATE ProjectOptions FuzzingSupport TestSupport ${ARG_LINKS})
  set(${name}_program ${program} PARENT_SCOPE)
endfunction()

if(KORVO_FUZZ)
  add_custom_target(Fuzzers)
endif()
