# Run by CPack when everything is in place for the package: what Debian has elsewhere.
set(shared ${CPACK_TEMPORARY_INSTALL_DIRECTORY}${CPACK_PACKAGING_INSTALL_PREFIX}/share)
file(RENAME ${shared}/zsh/site-functions ${shared}/zsh/vendor-completions)
