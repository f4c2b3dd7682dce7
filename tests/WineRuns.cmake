# One CTest entry per way in which Windows can look: starting Wine once per test would take minutes.
#   24      a true-colour screen
#   8       a palette device: RC_PALETTE, 256 entries, 20 of them reserved
#   win32s  GetVersion answers as on Win32s: global memory and temporary files
#   plain   a true-colour screen, and no vector forms
# Adds the test TARGET-RUN, which runs the program with the arguments that follow.
function(vncore_add_wine_run target run)
  add_test(NAME ${target}-${run} COMMAND ${target} ${ARGN})
  # WINEPATH: where a program that links with VNCORE32.DLL finds it.
  set(environment VNCORE_WINE_HOME=${PROJECT_BINARY_DIR}/wine WINEPATH=${PROJECT_BINARY_DIR})
  if(run STREQUAL 8)
    list(APPEND environment VNCORE_WINE_DEPTH=8)
  elseif(run STREQUAL win32s)
    list(APPEND environment VNCORE_WINE_VERSION=win31)
  elseif(run STREQUAL plain)
    list(APPEND environment VNCORE_VECTOR=none)
  endif()
  set_tests_properties(${target}-${run} PROPERTIES ENVIRONMENT "${environment}" TIMEOUT 900
    LABELS wine)
endfunction()
