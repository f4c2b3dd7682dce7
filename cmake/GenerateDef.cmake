# Makes the module-definition file that the linker gets from the table of exports: the lines of the
# functions that the library has, at 32 bits with their decorated names (the linker and dlltool strip
# the decoration again; the import library needs it). At 64 bits names are not decorated.
#
# usage: cmake -DTABLE=kernel/vncore32.def -DOBJECTS=file;... -DNM=nm -DOUTPUT=file.def -P ...
execute_process(COMMAND ${NM} --defined-only --extern-only ${OBJECTS}
  OUTPUT_VARIABLE symbols ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(STRINGS ${TABLE} lines)
set(text "")
foreach(line IN LISTS lines)
  if(line MATCHES "^ *([A-Za-z0-9_]+) +(@[0-9]+( PRIVATE)?)$")
    set(name ${CMAKE_MATCH_1})
    set(ordinal ${CMAKE_MATCH_2})
    if(symbols MATCHES " T _?(${name}(@[0-9]+)?)\n")
      string(APPEND text "  ${CMAKE_MATCH_1} ${ordinal}\n")
    endif()
  elseif(NOT line MATCHES "^;")
    string(APPEND text "${line}\n")
  endif()
endforeach()
file(CONFIGURE OUTPUT ${OUTPUT} CONTENT "${text}" @ONLY)
