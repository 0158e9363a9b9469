# What makes a fault in our own code harder to abuse, in every build: guarded stack frames, checked string functions,
# addresses that nobody can foretell, tables that can't be written once the program runs.
# `scripts/check-hardening` reads from the finished programs that they have it.
include(CheckCXXCompilerFlag)
include(CheckPIESupported)

check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

target_compile_options(qm_flags INTERFACE -fstack-protector-strong)
if(NOT QUILLMATE_SANITIZE)
  # Nothing is checked without optimisation. A build of type None gets its flags from a packager.
  target_compile_options(qm_flags INTERFACE
    $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel,None>:-U_FORTIFY_SOURCE>
    $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel,None>:-D_FORTIFY_SOURCE=2>)
endif()

if(WIN32)
  target_link_options(qm_flags INTERFACE -fstack-protector-strong -Wl,--dynamicbase,--high-entropy-va,--nxcompat)
else()
  # Nothing of ours is replaced from outside: calls within a library need not ask where they lead.
  target_compile_options(qm_flags INTERFACE -fno-semantic-interposition)
  target_link_options(qm_flags INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
  check_cxx_compiler_flag(-fcf-protection QUILLMATE_HAS_CF_PROTECTION)
  if(QUILLMATE_HAS_CF_PROTECTION)
    target_compile_options(qm_flags INTERFACE -fcf-protection)
  endif()
endif()
