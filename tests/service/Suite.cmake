# The service suite tests the serving core directly and runs the program
# itself; VAGENTD_EXECUTABLE names the program built beside it.
target_link_libraries(${suite} PRIVATE vagentd_core)
add_dependencies(${suite} vagentd)
target_compile_definitions(${suite} PRIVATE VAGENTD_EXECUTABLE="$<TARGET_FILE:vagentd>")
# The Windows program under Wine, where an emulator runs the suites.
include(${CMAKE_CURRENT_LIST_DIR}/WineTests.cmake OPTIONAL)
