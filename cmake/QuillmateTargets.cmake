# One library target per layer. Public headers live in src/<layer>/include/quillmate/<layer>/ and are the only
# thing another layer sees; what a layer may use is what it links.

add_library(qm_flags INTERFACE)
target_compile_features(qm_flags INTERFACE cxx_std_20)
target_compile_options(qm_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)
# GCC 12 takes the concatenation of short strings for overlapping copies.
target_compile_options(qm_flags INTERFACE $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>)
if(QUILLMATE_SANITIZE)
  target_compile_options(qm_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(qm_flags INTERFACE -fsanitize=address,undefined)
endif()
if(QUILLMATE_FUZZ)
  # The other compiler warns of other things; its warnings stop nobody here.
  target_compile_options(qm_flags INTERFACE -fsanitize=fuzzer-no-link -Wno-error)
endif()
include(${CMAKE_CURRENT_LIST_DIR}/QuillmateHardening.cmake)

if(WIN32)
  target_compile_definitions(qm_flags INTERFACE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00)
endif()
if(WIN32 AND CMAKE_CROSSCOMPILING)
  # Without the compiler's own libraries beside the programs. Whoever builds on Windows has them, and Qt, as DLLs.
  target_link_options(qm_flags INTERFACE -static)
endif()

# quillmate_sources(VARIABLE FOLDER): the folder's sources; files named *_posix.cpp and *_windows.cpp (with or without
# _test behind) belong to one kind of system only.
function(quillmate_sources variable folder)
  file(GLOB found CONFIGURE_DEPENDS ${folder}/*.cpp)
  if(WIN32)
    list(FILTER found EXCLUDE REGEX "_posix(_test)?\\.cpp$")
  else()
    list(FILTER found EXCLUDE REGEX "_windows(_test)?\\.cpp$")
  endif()
  set(${variable} ${found} PARENT_SCOPE)
endfunction()

# quillmate_layer(NAME [QT] [PUBLIC lib...] [PRIVATE lib...])
function(quillmate_layer name)
  cmake_parse_arguments(ARG "QT" "" "PUBLIC;PRIVATE" ${ARGN})
  set(dir ${PROJECT_SOURCE_DIR}/src/${name})
  quillmate_sources(sources ${dir})
  file(GLOB headers CONFIGURE_DEPENDS ${dir}/include/quillmate/${name}/*.h)
  add_library(qm_${name} STATIC)
  target_sources(qm_${name}
    PRIVATE ${sources}
    PUBLIC FILE_SET HEADERS BASE_DIRS ${dir}/include FILES ${headers})
  set_target_properties(qm_${name} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
  target_link_libraries(qm_${name} PUBLIC ${ARG_PUBLIC} PRIVATE qm_flags ${ARG_PRIVATE})
  set_property(GLOBAL APPEND PROPERTY QUILLMATE_ROOMS ${name})
  if(ARG_QT)
    file(GLOB private_headers CONFIGURE_DEPENDS ${dir}/*.h)
    target_sources(qm_${name} PRIVATE ${private_headers})
    set_target_properties(qm_${name} PROPERTIES AUTOMOC ON)
  endif()
endfunction()

# quillmate_test(LAYER [lib...]): every tests/<layer>/*.cpp in one program.
function(quillmate_test layer)
  quillmate_sources(sources ${PROJECT_SOURCE_DIR}/tests/${layer})
  if(WIN32)
    list(APPEND sources ${PROJECT_SOURCE_DIR}/tests/windows/child_process.cpp)
  endif()
  add_executable(test_${layer} ${sources})
  target_link_libraries(test_${layer} PRIVATE qm_flags test_places ${ARGN} GTest::gtest)
  target_include_directories(test_${layer} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  set_target_properties(test_${layer} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
  add_test(NAME ${layer} COMMAND test_${layer})
endfunction()
