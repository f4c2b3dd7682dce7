include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-Wshadow=local VNCORE_HAVE_WSHADOW_LOCAL)

# Warnings and sanitizers, the same for every target of the project. A target that stands for a
# user's program (an example) sees the public headers alone; the others see the rooms as well.
function(vncore_compile_options target)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
  vncore_user_compile_options(${target})
endfunction()
function(vncore_user_compile_options target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
  if(VNCORE_HAVE_WSHADOW_LOCAL)
    target_compile_options(${target} PRIVATE -Wshadow=local)
  endif()
  if(VNCORE_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(WIN32)
    target_compile_definitions(${target} PRIVATE NOMINMAX WIN32_LEAN_AND_MEAN STRICT)
  endif()
  if(VNCORE_SANITIZE)
    # Full optimisation triples the time that instrumented code takes to compile, and finds no more.
    target_compile_options(${target} PRIVATE -O1 -g1 -fsanitize=${VNCORE_SANITIZE}
      -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PUBLIC -fsanitize=${VNCORE_SANITIZE})
  endif()
  if(VNCORE_COVERAGE)
    target_compile_options(${target} PRIVATE -O0 --coverage -fprofile-update=atomic)
    target_link_options(${target} PUBLIC --coverage)
  endif()
  if(VNCORE_FUZZ)
    # Calls are drawn from numbers at which arithmetic turns; to trace every comparison of a pixel
    # loop takes half of the time.
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link
      -fno-sanitize-coverage=trace-cmp)
  endif()
endfunction()

# Headers that a target's files would parse one by one. Not under a compiler cache, which as
# it comes does not keep such files.
function(vncore_precompile target)
  if(NOT CMAKE_CXX_COMPILER_LAUNCHER)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()

# What is tested is optimised; the tests themselves need only compile soon.
function(vncore_test_options target)
  vncore_compile_options(${target})
  target_compile_options(${target} PRIVATE -O1)
  vncore_precompile(${target} <gtest/gtest.h>)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${VNCORE_UNITY} UNITY_BUILD_BATCH_SIZE 8)
endfunction()
