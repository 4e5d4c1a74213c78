# Run by CPack before it packs: gives every staged file the time SOURCE_DATE_EPOCH, if that is set, so that the same
# sources make the same archives, byte for byte.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND_ERROR_IS_FATAL ANY
    COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -exec touch --no-dereference --date=@$ENV{SOURCE_DATE_EPOCH} {} +)
endif()
