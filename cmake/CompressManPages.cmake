# Run by CPack before it packs: Debian keeps manual pages compressed.
file(GLOB_RECURSE pages "${CPACK_TEMPORARY_DIRECTORY}/*.[1-9]")
list(FILTER pages INCLUDE REGEX "/man/man[1-9]/")
foreach(page ${pages})
    execute_process(COMMAND gzip -9n ${page} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
