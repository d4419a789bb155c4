# On Windows, the two "Config.ini" files really differ only when the library
# is a DLL in another directory than the program: this second program links
# vagent.dll (not the static archive), is built into a directory of its own,
# and finds the DLL through WINEPATH.
if(WIN32)
  set(config_locations vagent_sessions_dll_tests)
  add_executable(${config_locations} ${CMAKE_CURRENT_LIST_DIR}/dll/ConfigLocationsTest.cpp)
  target_link_libraries(${config_locations} PRIVATE vagent GTest::gmock GTest::gtest_main)
  vagent_warnings(${config_locations})
  set_target_properties(${config_locations} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/sessions-dll)
  vagent_add_test_binary(${config_locations})
  if(TEST ${config_locations})
    set_tests_properties(${config_locations} PROPERTIES ENVIRONMENT
      "WINEPATH=Z:$<TARGET_FILE_DIR:vagent>;VAGENT_DLL_DIR=Z:$<TARGET_FILE_DIR:vagent>;VAGENT_EXE_DIR=Z:$<TARGET_FILE_DIR:${config_locations}>")
  endif()
endif()
