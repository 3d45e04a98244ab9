# A build for macOS by Debian's clang, against the stand-in for Xcode that sdk.py puts together in
# MACOS_STAND_IN.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES MACOS_STAND_IN)
set(tools ${MACOS_STAND_IN}/tools)
set(llvm /usr/lib/llvm-19/bin)

# Beyond what a Mac has: the tools for clang, and libc++'s headers, which it would take from its own
# installation, with macOS's settings.
set(flags "-B${tools} -Wno-unused-command-line-argument")
set(cxx_flags "-nostdinc++ -isystem ${MACOS_STAND_IN}/sdk/usr/include/c++/v1 -D_GNU_SOURCE")
foreach(language IN ITEMS C CXX OBJC OBJCXX)
  set(CMAKE_${language}_COMPILER ${llvm}/clang)
  set(CMAKE_${language}_COMPILER_TARGET arm64-apple-macosx)
  set(CMAKE_${language}_FLAGS_INIT ${flags})
endforeach()
foreach(language IN ITEMS CXX OBJCXX)
  set(CMAKE_${language}_COMPILER ${llvm}/clang++)
  string(APPEND CMAKE_${language}_FLAGS_INIT " ${cxx_flags}")
endforeach()

foreach(kind IN ITEMS EXE MODULE SHARED)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT -fuse-ld=lld)
endforeach()

set(CMAKE_OSX_SYSROOT ${MACOS_STAND_IN}/sdk)
set(CMAKE_FIND_ROOT_PATH ${MACOS_STAND_IN}/sdk)
foreach(kind IN ITEMS LIBRARY INCLUDE PACKAGE)
  set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_PROGRAM_PATH ${tools})

# CMake's own tests of the compiler would link programs against symbols that we do not list.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_AR ${llvm}/llvm-ar)
set(CMAKE_RANLIB ${llvm}/llvm-ranlib)
set(CMAKE_INSTALL_NAME_TOOL ${llvm}/llvm-install-name-tool)
# llvm-ar leaves objects for two processors as they are, which no linker reads in an archive.
foreach(language IN ITEMS C CXX OBJC OBJCXX)
  set(CMAKE_${language}_ARCHIVE_CREATE "${tools}/libtool -static -o <TARGET> <OBJECTS>")
  set(CMAKE_${language}_ARCHIVE_FINISH "")
endforeach()
