# What every target of ours is compiled with: all warnings as errors, and the
# sanitizers when the preset asks for them.
option(KORVO_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)

add_library(ProjectOptions INTERFACE)
target_compile_options(ProjectOptions INTERFACE
  -Wall -Wextra -Werror -Wshadow
  $<$<COMPILE_LANGUAGE:CXX,OBJCXX>:-Wnon-virtual-dtor -Woverloaded-virtual>
  $<$<COMPILE_LANGUAGE:CXX>:-Wconversion -Wold-style-cast>
  # CMake 3.25 passes no -std for GNU OBJCXX; the older spelling is the one that clang 14's tools
  # know too.
  $<$<COMPILE_LANGUAGE:OBJCXX>:-std=c++2b -fobjc-call-cxx-cdtors>)
# Where a failing test or a sanitizer points: lines, and no variables, which cost a quarter of the
# time of compiling a test. For a debugger there is the debug preset.
if(KORVO_SANITIZE OR NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  target_compile_options(ProjectOptions INTERFACE -g1)
endif()
if(KORVO_SANITIZE)
  target_compile_options(ProjectOptions INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
    # The script machine looks on the stack for what is in use still. From GCC 13 on frames would
    # lie elsewhere, so that it collected what we hold.
    $<$<CXX_COMPILER_ID:GNU>:--param=asan-use-after-return=0>)
  target_link_options(ProjectOptions INTERFACE -fsanitize=address,undefined)
endif()

# For libFuzzer: C++ by clang with its coverage and the sanitizers. The Objective-C++ stays with
# g++, whose address sanitizer and coverage go together with clang's run time (Fuzzing/Support).
option(KORVO_FUZZ
  "Build the fuzz targets with libFuzzer, in place of the tests of their corpora" OFF)
if(KORVO_FUZZ)
  target_compile_options(ProjectOptions INTERFACE
    -fno-omit-frame-pointer
    # clang warns of what GCC 12's own std::stable_sort uses.
    $<$<COMPILE_LANGUAGE:CXX>:-Wno-deprecated-declarations
      -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
      -fprofile-instr-generate -fcoverage-mapping>
    $<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:-fsanitize=address -fsanitize-coverage=trace-pc,trace-cmp>)
  target_link_options(ProjectOptions INTERFACE
    LINKER:--wrap=__sanitizer_cov_trace_pc
    $<$<LINK_LANGUAGE:CXX>:-fsanitize=address,undefined -fprofile-instr-generate>)
endif()
