# VNCORE_VERSION, as the public header tells it.
set(VNCORE_VERSION "")
foreach(part MAJOR MINOR PATCH)
  file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/../kernel/include/vncore/vn_version.h line
    REGEX "#define VNCORE_VERSION_${part} ")
  string(REGEX MATCH "${part} ([0-9]+)" _ "${line}")
  list(APPEND VNCORE_VERSION ${CMAKE_MATCH_1})
endforeach()
list(JOIN VNCORE_VERSION "." VNCORE_VERSION)
if(CMAKE_SCRIPT_MODE_FILE)
  message(NOTICE ${VNCORE_VERSION})  # for scripts: cmake -P cmake/Version.cmake
endif()
