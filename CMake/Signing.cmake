# Code signatures. Without an identity the signature is an ad-hoc one, which serves on the machine
# that built it; with one ("Developer ID Application: …") it is a hardened one with a time stamp, as
# notarisation wants.
set(KORVO_SIGNING_IDENTITY "-" CACHE STRING "Identity to sign with; - signs ad hoc")
find_program(CODESIGN codesign REQUIRED)

set(signing_options --force --sign ${KORVO_SIGNING_IDENTITY})
if(NOT KORVO_SIGNING_IDENTITY STREQUAL "-")
  list(APPEND signing_options --options runtime --timestamp)
endif()

# sign(TARGET [OPTION…]) signs the bundle of TARGET whenever it was linked.
function(sign target)
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CODESIGN} ${signing_options} ${ARGN} $<TARGET_BUNDLE_DIR:${target}>
    COMMENT "Signing ${target}" VERBATIM)
endfunction()
