# Writes the licences of Orvanel and its third-party parts. orvanel_notices is the folder of THIRD-PARTY-NOTICES and
# REQUIREMENTS.
set(orvanel_notices ${PROJECT_BINARY_DIR}/notices)
set(orvanel_notices_table ${PROJECT_SOURCE_DIR}/cmake/notices/third_party.txt)
set(orvanel_platform $<IF:$<BOOL:${WIN32}>,windows,linux>)
add_custom_command(OUTPUT ${orvanel_notices}/THIRD-PARTY-NOTICES ${orvanel_notices}/REQUIREMENTS
  COMMAND ${PROJECT_SOURCE_DIR}/cmake/notices/make_notices.sh ${orvanel_notices_table} ${orvanel_platform}
    ${orvanel_notices}
  DEPENDS ${PROJECT_SOURCE_DIR}/cmake/notices/make_notices.sh ${orvanel_notices_table})
add_custom_target(orvanel_notices ALL
  DEPENDS ${orvanel_notices}/THIRD-PARTY-NOTICES ${orvanel_notices}/REQUIREMENTS)
