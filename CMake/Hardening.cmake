# What makes a mistake in memory end the program at its place, before somebody makes use of it. In
# one place for all that is built; no room turns anything of it off. Tests/Hardening looks for it
# in the programs.

# A function with an array on its stack finds out when it was written past, and large frames touch
# every page that they reach over.
target_compile_options(ProjectOptions INTERFACE -fstack-protector-strong)
if(NOT CMAKE_SYSTEM_NAME STREQUAL "Darwin")
  target_compile_options(ProjectOptions INTERFACE -fstack-clash-protection)
endif()

# The C library's functions know the size of what they write to, where the compiler does. Level 3
# would compute sizes at run time, which costs the hot loops over characters 6 % of their
# instructions, and Apple's library knows no such level. It takes optimised code, and the
# sanitizers' own checks see more.
if(NOT KORVO_SANITIZE AND NOT KORVO_FUZZ)
  target_compile_options(ProjectOptions INTERFACE
    $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
endif()

# Jumps and returns end only where the compiler meant them to, on processors that watch over it. On
# Apple's systems that belongs to the system's own programs.
set(watched_returns)
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    target_compile_options(ProjectOptions INTERFACE -fcf-protection=full)
    # Debian's start code bears no mark, and the linker marks only what bears it in every part. That
    # code leaves return addresses alone, so it may be watched; it has no landing places for
    # jumps, so those stay unmarked.
    set(watched_returns LINKER:-z,shstk)
  elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64|arm64")
    target_compile_options(ProjectOptions INTERFACE -mbranch-protection=standard)
  endif()

  # Every table of addresses is filled at the start and read-only from then on; no stack holds code.
  target_link_options(ProjectOptions INTERFACE
    LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack ${watched_returns})
  # Addresses of an executable change from run to run; a library's do anyway.
  include(CheckPIESupported)
  check_pie_supported()
  # Libraries are found from the place of the program, wherever the folder was put: a folder that
  # somebody else can make is never looked into.
  set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
endif()
