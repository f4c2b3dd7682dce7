# Vector forms of the rooms' loops. Each lies in a file of its own, compiled for AVX2; whether it runs
# is asked when the library runs. 64-bit Windows stays with the plain loops: the compiler there does
# not keep the stack aligned for 32-byte registers.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86)$"
    AND NOT (WIN32 AND CMAKE_SIZEOF_VOID_P EQUAL 8))
  set(VNCORE_HAVE_AVX2 ON)
  target_compile_definitions(vncore_objects PRIVATE VNCORE_HAVE_AVX2)
endif()

# Adds the files of a room, where they can run at all.
function(vncore_vector_sources)
  if(NOT VNCORE_HAVE_AVX2)
    return()
  endif()
  target_sources(vncore_objects PRIVATE ${ARGN})
  set_source_files_properties(${ARGN} TARGET_DIRECTORY vncore_objects
    PROPERTIES COMPILE_OPTIONS -mavx2)
endfunction()
