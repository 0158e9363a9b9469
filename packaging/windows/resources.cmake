# quillmate_windows_resources(TARGET DESCRIPTION): gives a program its icon, what Explorer shows about it, and the
# manifest. A library of its own keeps the C++ compiler's options from the resource compiler.
function(quillmate_windows_resources target description)
  set(folder ${PROJECT_SOURCE_DIR}/packaging/windows)
  set(QUILLMATE_PROGRAM ${target})
  set(QUILLMATE_DESCRIPTION ${description})
  set(QUILLMATE_ICON ${PROJECT_SOURCE_DIR}/resources/icons/4A.ico)
  set(QUILLMATE_MANIFEST ${folder}/quillmate.manifest)
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  configure_file(${folder}/program.rc.in ${script} @ONLY)
  set_source_files_properties(${script} PROPERTIES OBJECT_DEPENDS "${QUILLMATE_ICON};${QUILLMATE_MANIFEST}")
  add_library(${target}_resources OBJECT ${script})
  target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}_resources>)
endfunction()
