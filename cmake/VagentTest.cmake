# One test binary is one ctest test. Under an emulator (Wine) a binary that
# never ran can still exit 0, so a run passes only on GoogleTest's own
# success line and fails on its failure line. A cross build without an
# emulator builds its suites but cannot run them.
function(vagent_add_test_binary name)
  if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
    return()
  endif()
  add_test(NAME ${name} COMMAND ${name} --gtest_color=no)
  set_tests_properties(${name} PROPERTIES
    PASS_REGULAR_EXPRESSION "\\[  PASSED  \\]"
    FAIL_REGULAR_EXPRESSION "\\[  FAILED  \\]"
    TIMEOUT 600)
endfunction()
