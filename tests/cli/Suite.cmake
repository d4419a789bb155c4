# The client suite runs vagentctl's entry in this process against agent
# services started in it, on the in-memory host, and the program itself once
# as a child process. The service's end-to-end helpers and the facade suite's
# one-shot capturing service come along.
target_link_libraries(${suite} PRIVATE vagentctl_core_static vagentd_core)
target_sources(${suite} PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/service/EndToEndHost.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/service/EndToEndService.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/service/EndToEndTree.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/service/TestClientFrames.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/facade/CaptureServer.cpp)
add_dependencies(${suite} vagentctl)
target_compile_definitions(${suite} PRIVATE VAGENTCTL_EXECUTABLE="$<TARGET_FILE:vagentctl>")
