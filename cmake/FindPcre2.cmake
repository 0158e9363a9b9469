# Regular expressions on 16-bit units, as the target Pcre2::Pcre2.
include(${CMAKE_CURRENT_LIST_DIR}/QuillmateFindLibrary.cmake)
quillmate_find_library(Pcre2 pcre2.h pcre2-16)
if(Pcre2_FOUND)
  set_target_properties(Pcre2::Pcre2 PROPERTIES
    INTERFACE_COMPILE_DEFINITIONS "PCRE2_CODE_UNIT_WIDTH=16;$<$<PLATFORM_ID:Windows>:PCRE2_STATIC>")
endif()
