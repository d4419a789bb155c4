# The facade's remote tests start an agent service inside the test program,
# on the in-memory host and with the tree helpers of the service's own suite.
target_link_libraries(${suite} PRIVATE vagentd_core)
target_sources(${suite} PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/service/EndToEndHost.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/service/EndToEndService.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/service/EndToEndTree.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/service/TestClientFrames.cpp)
