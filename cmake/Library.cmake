# The two forms of the library and their installation.
if(NOT WIN32)
  find_package(Threads REQUIRED)
endif()

add_library(vncore SHARED)
add_library(vncore::vncore ALIAS vncore)
add_library(vncore_static STATIC)
foreach(form vncore vncore_static)
  target_sources(${form} PRIVATE $<TARGET_OBJECTS:vncore_objects>)
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
    target_link_libraries(${form} PRIVATE Threads::Threads)
  endif()
endforeach()
set_target_properties(vncore PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
if(WIN32)
  # VNCORE32.DLL with undecorated names and settled ordinals. The linker's own import library loses
  # the decoration that callers refer to, so dlltool writes it anew.
  set(def ${PROJECT_BINARY_DIR}/vncore32.def)
  add_custom_command(OUTPUT ${def}
    COMMAND ${CMAKE_COMMAND} -DTABLE=${PROJECT_SOURCE_DIR}/kernel/vncore32.def
      -DLIBRARY=$<TARGET_FILE:vncore_static> -DNM=${CMAKE_NM} -DOUTPUT=${def}
      -P ${PROJECT_SOURCE_DIR}/cmake/GenerateDef.cmake
    DEPENDS vncore_static kernel/vncore32.def cmake/GenerateDef.cmake VERBATIM)
  target_sources(vncore PRIVATE ${def})
  set_target_properties(vncore PROPERTIES PREFIX "" OUTPUT_NAME VNCORE32 SUFFIX .DLL
    ARCHIVE_OUTPUT_NAME vncore32)
  target_link_options(vncore PRIVATE -Wl,--kill-at)
  add_custom_command(TARGET vncore POST_BUILD
    COMMAND ${CMAKE_DLLTOOL} --kill-at --input-def ${def}
      --output-lib $<TARGET_LINKER_FILE:vncore> VERBATIM)
else()
  # Calls inside the library stay inside it, whatever else the process has loaded.
  target_link_options(vncore PRIVATE -Wl,-Bsymbolic -Wl,--no-undefined
    -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map)
  set_property(TARGET vncore APPEND PROPERTY LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
endif()

install(TARGETS vncore vncore_static EXPORT vncore-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# On Windows `<vncore/platform/win32.h>` is <windows.h>; the rest of the platform is not there.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/kernel/include/vncore
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(WIN32)
  install(FILES ${PROJECT_SOURCE_DIR}/platform/include/vncore/platform/win32.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vncore/platform)
else()
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/platform/include/vncore
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endif()

include(CMakePackageConfigHelpers)
install(EXPORT vncore-targets NAMESPACE vncore:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/vncore)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/vncore-config.cmake.in
  ${PROJECT_BINARY_DIR}/vncore-config.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/vncore)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/vncore-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/vncore-config.cmake
  ${PROJECT_BINARY_DIR}/vncore-config-version.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/vncore)
configure_file(${PROJECT_SOURCE_DIR}/cmake/vncore.pc.in ${PROJECT_BINARY_DIR}/vncore.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vncore.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
