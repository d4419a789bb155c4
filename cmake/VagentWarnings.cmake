# Warnings are errors for the project's own targets.
function(vagent_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror -Wshadow
                                           -Wnon-virtual-dtor -Wformat=2)
endfunction()
