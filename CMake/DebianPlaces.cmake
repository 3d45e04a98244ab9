# Run by CPack when everything is in place for the package: what Debian has elsewhere, under other
# names, or compressed.
set(shared ${CPACK_TEMPORARY_INSTALL_DIRECTORY}${CPACK_PACKAGING_INSTALL_PREFIX}/share)
set(documents ${shared}/doc/${CPACK_PACKAGE_NAME})
file(RENAME ${shared}/zsh/site-functions ${shared}/zsh/vendor-completions)
file(RENAME ${documents}/CHANGELOG.md ${documents}/changelog)

# Debian's own list, of its packages of one version.
set(version ${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${documents}/changelog.Debian
"${CPACK_PACKAGE_NAME} (${version}) stable; urgency=medium

  * Made by Scripts/package; changelog.gz tells what changed.

 -- ${CPACK_PACKAGE_CONTACT}  ${now}
")

file(GLOB pages ${shared}/man/man1/*.1)
# Without a time: the same files become the same bytes.
execute_process(
  COMMAND gzip -9n ${documents}/changelog ${documents}/changelog.Debian ${pages}
  COMMAND_ERROR_IS_FATAL ANY)
