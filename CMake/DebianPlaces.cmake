# Run by CPack when everything is in place for the package: what Debian has elsewhere, or wants
# compressed.
set(shared ${CPACK_TEMPORARY_INSTALL_DIRECTORY}${CPACK_PACKAGING_INSTALL_PREFIX}/share)
file(RENAME ${shared}/zsh/site-functions ${shared}/zsh/vendor-completions)
file(GLOB pages ${shared}/man/man1/*.1)
# Without a time: the same files make the same package.
execute_process(COMMAND gzip -9n ${pages} COMMAND_ERROR_IS_FATAL ANY)
