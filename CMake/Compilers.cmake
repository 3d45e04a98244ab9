# What has to be known before `project` looks for compilers.

# For macOS: both processors in each file, and the oldest system that it runs on. Elsewhere without
# effect.
set(CMAKE_OSX_DEPLOYMENT_TARGET 13.0 CACHE STRING "The oldest macOS that the build runs on")
set(CMAKE_OSX_ARCHITECTURES "arm64;x86_64" CACHE STRING "Processors of Macs to build for")

# On Linux, GNUstep runs on GCC's Objective-C runtime; left alone, CMake takes clang where it finds
# one.
if(NOT CMAKE_HOST_APPLE)
  if(NOT DEFINED ENV{OBJC})
    set(ENV{OBJC} gcc)
  endif()
  if(NOT DEFINED ENV{OBJCXX})
    set(ENV{OBJCXX} g++)
  endif()
endif()
