# GoogleTest built from the machine's sources, the same for every tier.
set(VAGENT_GTEST_SOURCE "/usr/src/googletest" CACHE PATH "GoogleTest source tree")
set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
if(WIN32)
  set(gtest_disable_pthreads ON CACHE BOOL "" FORCE)
endif()
add_subdirectory(${VAGENT_GTEST_SOURCE} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
