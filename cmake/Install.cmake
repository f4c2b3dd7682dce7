# Installation: libraries, headers, CMake package and pkg-config file. The installed tree can be
# moved as a whole.
include(CMakePackageConfigHelpers)

install(TARGETS vncore vncore_static EXPORT vncore-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

install(DIRECTORY ${PROJECT_SOURCE_DIR}/kernel/include/vncore
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(WIN32)
  # There the platform is <windows.h>.
  set(platform PATTERN headless EXCLUDE PATTERN win32_*.h EXCLUDE)
else()
  set(platform "")
endif()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/platform/include/vncore
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${platform})

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/vncore)
install(EXPORT vncore-targets NAMESPACE vncore:: DESTINATION ${package})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/vncore-config.cmake.in
  ${PROJECT_BINARY_DIR}/vncore-config.cmake INSTALL_DESTINATION ${package})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/vncore-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/vncore-config.cmake
  ${PROJECT_BINARY_DIR}/vncore-config-version.cmake DESTINATION ${package})

# The pkg-config file finds the tree from where it lies itself, unless the folders were set apart.
set(VNCORE_PC_LIBDIR \${prefix}/${CMAKE_INSTALL_LIBDIR})
set(VNCORE_PC_INCLUDEDIR \${prefix}/${CMAKE_INSTALL_INCLUDEDIR})
if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
  set(VNCORE_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
  set(VNCORE_PC_LIBDIR ${CMAKE_INSTALL_LIBDIR})
else()
  file(RELATIVE_PATH up /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  string(REGEX REPLACE "/$" "" up ${up})
  set(VNCORE_PC_PREFIX \${pcfiledir}/${up})
endif()
if(IS_ABSOLUTE ${CMAKE_INSTALL_INCLUDEDIR})
  set(VNCORE_PC_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR})
endif()
set(VNCORE_PC_LIBS -l${VNCORE_LIBRARY_NAME})
if(WIN32)
  list(APPEND VNCORE_PC_LIBS -lgdi32 -luser32)
endif()
set(runtime ${VNCORE_CXX_RUNTIME} ${CMAKE_DL_LIBS})
list(TRANSFORM runtime PREPEND -l)
list(APPEND runtime ${CMAKE_THREAD_LIBS_INIT})
list(JOIN VNCORE_PC_LIBS " " VNCORE_PC_LIBS)
list(JOIN runtime " " VNCORE_PC_LIBS_PRIVATE)
configure_file(${PROJECT_SOURCE_DIR}/cmake/vncore.pc.in ${PROJECT_BINARY_DIR}/vncore.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vncore.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
