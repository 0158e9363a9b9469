# The ciphers and hashes of Mbed TLS, as the target MbedCrypto::MbedCrypto.
include(${CMAKE_CURRENT_LIST_DIR}/QuillmateFindLibrary.cmake)
quillmate_find_library(MbedCrypto mbedtls/md.h mbedcrypto)
