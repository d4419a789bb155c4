# The facade's remote tests start an agent service inside the test program
# when the service's core is part of the build.
if(TARGET vagentd_core)
  target_link_libraries(${suite} PRIVATE vagentd_core)
endif()
