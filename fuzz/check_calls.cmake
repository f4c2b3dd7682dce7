# Every export has a place in a fuzz target: its name stands in one of the sources, comments aside.
#
# usage: cmake -DTABLE=kernel/vncore32.def -DFOLDER=fuzz -P check_calls.cmake
file(STRINGS ${TABLE} lines REGEX "^ *[A-Za-z0-9_]+ +@[0-9]+$")
set(code "")
file(GLOB sources ${FOLDER}/*.cpp)
foreach(source IN LISTS sources)
  file(READ ${source} text)
  string(REGEX REPLACE "//[^\n]*" "" text "${text}")
  string(APPEND code "${text}")
endforeach()
list(LENGTH lines count)
foreach(line IN LISTS lines)
  string(REGEX MATCH "[A-Za-z0-9_]+" name "${line}")
  if(name STREQUAL "DllMain")
    set(name OnLoaderCall)  # does its work; the entry point itself is no client's to call
  endif()
  if(NOT code MATCHES "${name}[^A-Za-z0-9_]")
    message(SEND_ERROR "no fuzz target calls ${name}")
  endif()
endforeach()
message(STATUS "the fuzz targets call all of ${count} exports")
