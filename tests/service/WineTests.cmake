# vagentd as a Windows program under Wine: in the foreground, answering the
# suite's client tests, and registered with Wine's service manager. Each test
# passes only on the driver's own success line.
if(WIN32 AND CMAKE_CROSSCOMPILING_EMULATOR)
  find_program(VAGENT_BASH bash REQUIRED)
  # One argument for the driver, whatever the emulator's list holds.
  string(REPLACE ";" "|" VAGENT_EMULATOR_ARGUMENT "${CMAKE_CROSSCOMPILING_EMULATOR}")
  foreach(mode run install)
    add_test(NAME vagent_service_wine_${mode}
      COMMAND ${VAGENT_BASH} ${CMAKE_CURRENT_LIST_DIR}/wine-service-test.sh ${mode}
              "${VAGENT_EMULATOR_ARGUMENT}" $<TARGET_FILE:vagentd> $<TARGET_FILE:${suite}>)
    set_tests_properties(vagent_service_wine_${mode} PROPERTIES
      PASS_REGULAR_EXPRESSION "wine service ${mode}: passed"
      FAIL_REGULAR_EXPRESSION "wine service ${mode}: FAILED"
      TIMEOUT 60
      RUN_SERIAL TRUE)
  endforeach()
endif()
