# Warnings and sanitizers, the same for every target of the project.
function(vncore_compile_options target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wshadow=local)
  if(VNCORE_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(WIN32)
    target_compile_definitions(${target} PRIVATE NOMINMAX WIN32_LEAN_AND_MEAN STRICT)
  endif()
  if(VNCORE_SANITIZE)
    # Full optimisation triples the time that instrumented code takes to compile, and finds no more.
    target_compile_options(${target} PRIVATE -O1 -g1 -fsanitize=address,undefined -fno-sanitize-recover=all
      -fno-omit-frame-pointer)
    target_link_options(${target} PUBLIC -fsanitize=address,undefined)
  endif()
endfunction()
