# VNCORE_VERSION, as the public header tells it.
set(version_header ${CMAKE_CURRENT_LIST_DIR}/../kernel/include/vncore/vn_version.h)
set(VNCORE_VERSION "")
foreach(part MAJOR MINOR PATCH)
  file(STRINGS ${version_header} line REGEX "#define VNCORE_VERSION_${part} ")
  string(REGEX MATCH "${part} ([0-9]+)" _ "${line}")
  list(APPEND VNCORE_VERSION ${CMAKE_MATCH_1})
endforeach()
list(JOIN VNCORE_VERSION "." VNCORE_VERSION)
if(CMAKE_SCRIPT_MODE_FILE)
  message(NOTICE ${VNCORE_VERSION})  # for scripts: cmake -P cmake/Version.cmake
else()
  # A build folder notices when it changes.
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${version_header})
endif()
