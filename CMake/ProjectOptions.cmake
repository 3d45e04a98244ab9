# What every target of ours is compiled with: all warnings as errors, and the
# sanitizers when the preset asks for them.
option(KORVO_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)

add_library(ProjectOptions INTERFACE)
target_compile_options(ProjectOptions INTERFACE
  -Wall -Wextra -Werror -Wshadow
  $<$<COMPILE_LANGUAGE:CXX,OBJCXX>:-Wnon-virtual-dtor -Woverloaded-virtual>
  $<$<COMPILE_LANGUAGE:CXX>:-Wconversion -Wold-style-cast>
  # CMake 3.25 passes no -std for GNU OBJCXX; the older spelling is the one that clang 14's tools know too.
  $<$<COMPILE_LANGUAGE:OBJCXX>:-std=c++2b -fobjc-call-cxx-cdtors>)
if(KORVO_SANITIZE)
  target_compile_options(ProjectOptions INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(ProjectOptions INTERFACE -fsanitize=address,undefined)
endif()
