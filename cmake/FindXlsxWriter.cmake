# The writer of .xlsx files, as the target XlsxWriter::XlsxWriter.
include(${CMAKE_CURRENT_LIST_DIR}/QuillmateFindLibrary.cmake)
quillmate_find_library(XlsxWriter xlsxwriter.h xlsxwriter)
if(WIN32 AND XlsxWriter_FOUND)
  # Bound in, and so is what it packs with.
  set_target_properties(XlsxWriter::XlsxWriter PROPERTIES INTERFACE_LINK_LIBRARIES ZLIB::ZLIB)
endif()
