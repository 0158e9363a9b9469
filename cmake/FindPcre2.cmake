# Regular expressions on 16-bit units, as the target Pcre2::Pcre2.
find_path(Pcre2_INCLUDE_DIR pcre2.h)
find_library(Pcre2_LIBRARY pcre2-16)
mark_as_advanced(Pcre2_INCLUDE_DIR Pcre2_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Pcre2 REQUIRED_VARS Pcre2_LIBRARY Pcre2_INCLUDE_DIR)
if(Pcre2_FOUND AND NOT TARGET Pcre2::Pcre2)
  add_library(Pcre2::Pcre2 UNKNOWN IMPORTED)
  set_target_properties(Pcre2::Pcre2 PROPERTIES
    IMPORTED_LOCATION ${Pcre2_LIBRARY} INTERFACE_INCLUDE_DIRECTORIES ${Pcre2_INCLUDE_DIR}
    INTERFACE_COMPILE_DEFINITIONS "PCRE2_CODE_UNIT_WIDTH=16;$<$<PLATFORM_ID:Windows>:PCRE2_STATIC>")
endif()
