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

# quillmate_layer(NAME [QT] [PUBLIC lib...] [PRIVATE lib...])
function(quillmate_layer name)
  cmake_parse_arguments(ARG "QT" "" "PUBLIC;PRIVATE" ${ARGN})
  set(dir ${PROJECT_SOURCE_DIR}/src/${name})
  file(GLOB sources CONFIGURE_DEPENDS ${dir}/*.cpp)
  file(GLOB headers CONFIGURE_DEPENDS ${dir}/include/quillmate/${name}/*.h)
  add_library(qm_${name} STATIC)
  target_sources(qm_${name}
    PRIVATE ${sources}
    PUBLIC FILE_SET HEADERS BASE_DIRS ${dir}/include FILES ${headers})
  set_target_properties(qm_${name} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
  target_link_libraries(qm_${name} PUBLIC ${ARG_PUBLIC} PRIVATE qm_flags ${ARG_PRIVATE})
  if(ARG_QT)
    file(GLOB private_headers CONFIGURE_DEPENDS ${dir}/*.h)
    target_sources(qm_${name} PRIVATE ${private_headers})
    set_target_properties(qm_${name} PROPERTIES AUTOMOC ON)
  endif()
endfunction()

# quillmate_test(LAYER [lib...]): every tests/<layer>/*.cpp in one program.
function(quillmate_test layer)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/${layer}/*.cpp)
  add_executable(test_${layer} ${sources})
  target_link_libraries(test_${layer} PRIVATE qm_flags ${ARGN} GTest::gtest)
  target_include_directories(test_${layer} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(test_${layer} PRIVATE
    QUILLMATE_SOURCE_DIR="${PROJECT_SOURCE_DIR}" QUILLMATE_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
  set_target_properties(test_${layer} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
  add_test(NAME ${layer} COMMAND test_${layer})
endfunction()
