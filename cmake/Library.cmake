# The library: the objects of the rooms, and its shared and its static form.

# What both forms hold.
function(vncore_library_options target)
  vncore_compile_options(${target})
  target_include_directories(${target} PRIVATE
    ${PROJECT_SOURCE_DIR}/kernel/include ${PROJECT_SOURCE_DIR}/platform/include)
  set_target_properties(${target} PROPERTIES
    POSITION_INDEPENDENT_CODE ON C_VISIBILITY_PRESET hidden CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# The rooms' code, compiled once for both forms. Each room lists its own files.
add_library(vncore_objects OBJECT)
vncore_library_options(vncore_objects)
option(VNCORE_UNITY "Compile files several at a time: all of them sooner, one of them later" OFF)
set_target_properties(vncore_objects PROPERTIES UNITY_BUILD ${VNCORE_UNITY} UNITY_BUILD_BATCH_SIZE 12)
include(cmake/Vector.cmake)
foreach(room kernel color geometry compose region device platform)
  add_subdirectory(${room})
endforeach()

if(NOT WIN32)
  find_package(Threads REQUIRED)
endif()

foreach(form vncore vncore_static)
  # The one file in which the forms differ.
  add_library(${form}_entry OBJECT kernel/dll_main.cpp)
  vncore_library_options(${form}_entry)

  if(form STREQUAL vncore)
    add_library(vncore SHARED)
  else()
    add_library(vncore_static STATIC)
    target_compile_definitions(vncore_static_entry PRIVATE VNCORE_STATIC_FORM)
  endif()
  add_library(vncore::${form} ALIAS ${form})
  target_sources(${form} PRIVATE $<TARGET_OBJECTS:vncore_objects> $<TARGET_OBJECTS:${form}_entry>)
  target_include_directories(${form} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/kernel/include>
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/platform/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  set_target_properties(${form} PROPERTIES LINKER_LANGUAGE CXX)
  if(VNCORE_SANITIZE)
    target_link_options(${form} PUBLIC -fsanitize=${VNCORE_SANITIZE})
  endif()
  if(VNCORE_COVERAGE)
    target_link_options(${form} PUBLIC --coverage)
  endif()
  if(WIN32)
    target_link_libraries(${form} PUBLIC gdi32 user32)
  else()
    target_link_libraries(${form} PRIVATE Threads::Threads ${CMAKE_DL_LIBS})
  endif()
endforeach()

set_target_properties(vncore PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
if(WIN32)
  # VNCORE32.DLL with undecorated names and settled ordinals. The linker's own import library loses
  # the decoration that callers refer to, so dlltool writes it anew.
  set(VNCORE_LIBRARY_NAME vncore32)
  set(def ${PROJECT_BINARY_DIR}/vncore32.def)
  add_custom_command(OUTPUT ${def}
    COMMAND ${CMAKE_COMMAND} -DTABLE=${PROJECT_SOURCE_DIR}/kernel/vncore32.def
      "-DOBJECTS=$<TARGET_FILE:vncore_static>;$<TARGET_OBJECTS:vncore_entry>" -DNM=${CMAKE_NM}
      -DOUTPUT=${def} -P ${PROJECT_SOURCE_DIR}/cmake/GenerateDef.cmake
    DEPENDS vncore_static $<TARGET_OBJECTS:vncore_entry> kernel/vncore32.def cmake/GenerateDef.cmake
    VERBATIM)
  enable_language(RC)
  configure_file(cmake/vncore32.rc.in ${PROJECT_BINARY_DIR}/vncore32.rc @ONLY)
  target_sources(vncore PRIVATE ${def} ${PROJECT_BINARY_DIR}/vncore32.rc)
  set_target_properties(vncore PROPERTIES PREFIX "" OUTPUT_NAME VNCORE32 SUFFIX .DLL
    ARCHIVE_OUTPUT_NAME ${VNCORE_LIBRARY_NAME})
  target_link_options(vncore PRIVATE -Wl,--kill-at)
  add_custom_command(TARGET vncore POST_BUILD
    COMMAND ${CMAKE_DLLTOOL} --kill-at --input-def ${def}
      --output-lib $<TARGET_LINKER_FILE:vncore> VERBATIM)
else()
  set(VNCORE_LIBRARY_NAME vncore)
  # Calls inside the library stay inside it, whatever else the process has loaded.
  target_link_options(vncore PRIVATE -Wl,-Bsymbolic -Wl,--no-undefined
    -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map)
  set_property(TARGET vncore APPEND PROPERTY LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
endif()
# A program in C is linked by C's linker, which must be told what the static form stands on.
set(VNCORE_CXX_RUNTIME ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
list(REMOVE_ITEM VNCORE_CXX_RUNTIME ${CMAKE_C_IMPLICIT_LINK_LIBRARIES})
list(REMOVE_DUPLICATES VNCORE_CXX_RUNTIME)
target_link_libraries(vncore_static INTERFACE "$<$<LINK_LANGUAGE:C>:${VNCORE_CXX_RUNTIME}>")
# The forms bear one name, so that `-static` alone chooses between them.
set_target_properties(vncore_static PROPERTIES OUTPUT_NAME ${VNCORE_LIBRARY_NAME})
