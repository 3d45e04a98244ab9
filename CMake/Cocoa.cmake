# Cocoa on macOS: its frameworks as the targets Cocoa::Foundation and Cocoa::AppKit, and Apple
# Events as ApplicationServices. The sources hold and release objects themselves, as GNUstep's
# compiler asks.
foreach(framework IN ITEMS Foundation AppKit ApplicationServices)
  set(target Cocoa::${framework})
  if(framework STREQUAL "ApplicationServices")
    set(target ${framework})
  endif()
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_compile_options(${target} INTERFACE $<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:-fno-objc-arc>)
  target_link_libraries(${target} INTERFACE "-framework ${framework}")
endforeach()
target_link_libraries(Cocoa::AppKit INTERFACE Cocoa::Foundation)
# Sending of events, which ApplicationServices declares, is CoreServices' own.
target_link_libraries(ApplicationServices INTERFACE "-framework CoreServices")
