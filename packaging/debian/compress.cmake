# Run by cpack in front of packing: man pages and the changelog are compressed as Debian has them.
set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share)
file(GLOB_RECURSE pages ${share}/man/*.1)
execute_process(COMMAND gzip -9nf ${pages} ${share}/doc/sonarello/changelog COMMAND_ERROR_IS_FATAL ANY)
