# The icon tests read a Windows program built with an icon resource, and the
# icon file it was built from, both placed beside the suite's own program.
if(WIN32)
  enable_language(RC)
  add_executable(vagent_icon_sample ${CMAKE_CURRENT_LIST_DIR}/data/IconSample.cpp
                                    ${CMAKE_CURRENT_LIST_DIR}/data/IconSample.rc)
  target_include_directories(vagent_icon_sample PRIVATE ${CMAKE_CURRENT_LIST_DIR}/data)
  set_target_properties(vagent_icon_sample PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY $<TARGET_FILE_DIR:${suite}>)
  add_custom_command(TARGET vagent_icon_sample POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E copy_if_different ${CMAKE_CURRENT_LIST_DIR}/data/sample.ico
            $<TARGET_FILE_DIR:${suite}>/vagent_icon_sample.ico)
  add_dependencies(${suite} vagent_icon_sample)
endif()
