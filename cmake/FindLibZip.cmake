# The zip library, as the target LibZip::LibZip. The configuration file that some distributions install beside the
# library also asks for its command line tools, which nobody needs here.
include(${CMAKE_CURRENT_LIST_DIR}/QuillmateFindLibrary.cmake)
quillmate_find_library(LibZip zip.h zip)
