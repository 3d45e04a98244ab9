# What Scripts/package makes for Debian: one package of all components, for the release that it is
# built on.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME korvo-mellel)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT
  "The authors of the Korvo-Mellel plug-in <authors@korvo-mellel.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
  "plug-in between reference manager and word processor, with stand-ins")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"korvo shows libraries of references, formats citations in thousands of
styles and loads the plug-in; mellel has it format the citations of RTF
documents. The two talk over the message bus of the session, as the
applications that they stand in for talk over Apple Events.")
set(CPACK_DEBIAN_PACKAGE_SECTION text)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_STRIP_FILES TRUE)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)

# 2.1-1~deb12: packages for several releases bear the same version, and each its own name.
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
if(EXISTS /etc/os-release)
  file(STRINGS /etc/os-release release REGEX "^(ID|VERSION_ID)=")
  if(release MATCHES "VERSION_ID=\"([0-9.]+)\"" AND release MATCHES "(^|;)ID=debian")
    string(REGEX MATCH "VERSION_ID=\"([0-9.]+)\"" ignored "${release}")
    string(APPEND CPACK_DEBIAN_PACKAGE_RELEASE "~deb${CMAKE_MATCH_1}")
  endif()
endif()

# The libraries' packages are computed; the rest is marked in the set-up's list.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS TRUE)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(needed_packages ${CMAKE_SOURCE_DIR}/Scripts/packages.txt)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${needed_packages})
file(STRINGS ${needed_packages} needed REGEX "# to run$")
list(TRANSFORM needed REPLACE " *# to run$" "")
list(JOIN needed ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "default-dbus-session-bus | dbus-session-bus")

set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/DebianPlaces.cmake)
include(CPack)
