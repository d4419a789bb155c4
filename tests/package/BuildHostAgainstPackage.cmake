# cmake -P script: BUILD_DIR installed into WORK_DIR/prefix, the host program
# in HOST_SOURCE configured and built against that prefix alone, then run.
# Any step that goes wrong stops the script with FATAL_ERROR.

function(run_step description)
  execute_process(COMMAND ${ARGN}
    RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${description} failed (${status}):\n${output}\n${errors}")
  endif()
  set(step_output "${output}" PARENT_SCOPE)
endfunction()

function(expect_installed path)
  if(NOT EXISTS ${prefix}/${path})
    message(FATAL_ERROR "not installed: ${path}")
  endif()
endfunction()

function(expect_match what pattern text)
  if(NOT text MATCHES "${pattern}")
    message(FATAL_ERROR "${what}: expected \"${pattern}\", got:\n${text}")
  endif()
endfunction()

set(prefix ${WORK_DIR}/prefix)
set(host_build ${WORK_DIR}/host-build)
file(REMOVE_RECURSE ${WORK_DIR})

run_step("install" ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
set(package_dir ${LIBDIR}/cmake/vagent)
foreach(path ${BINDIR}/vagentd ${LIBDIR}/libvagent.so ${INCLUDEDIR}/vagent/VAgent.h
             ${INCLUDEDIR}/vagent/VAgentW.h ${INCLUDEDIR}/vagent/Export.h
             ${package_dir}/vagentConfig.cmake ${package_dir}/vagentConfigVersion.cmake
             ${package_dir}/vagentTargets.cmake)
  expect_installed(${path})
endforeach()
# Only the public headers travel.
file(GLOB_RECURSE installed_headers RELATIVE ${prefix}/${INCLUDEDIR} ${prefix}/${INCLUDEDIR}/*)
foreach(header ${installed_headers})
  expect_match("installed header" "^vagent/[A-Za-z0-9]+\\.h$" "${header}")
endforeach()

run_step("vagentd --version" ${prefix}/${BINDIR}/vagentd --version)
expect_match("installed vagentd" "^vagentd ${VERSION}\n" "${step_output}")
if(EXISTS ${BUILD_DIR}/cli)
  expect_installed(${BINDIR}/vagentctl)
  # The client finds the shared library beside it in the prefix.
  run_step("vagentctl --version" ${prefix}/${BINDIR}/vagentctl --version)
  expect_match("installed vagentctl" "${VERSION}" "${step_output}")
endif()

# CMAKE_FIND_USE_PACKAGE_REGISTRY and the system paths stay out, so the only
# package that can be found is the one just installed.
run_step("configure the host program" ${CMAKE_COMMAND} -S ${HOST_SOURCE} -B ${host_build}
  -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_BUILD_TYPE=${BUILD_TYPE}
  -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF
  -DCMAKE_FIND_USE_SYSTEM_PACKAGE_REGISTRY=OFF)
expect_match("package found" "vagent package: ${prefix}/${package_dir} \\(version ${VERSION}\\)"
  "${step_output}")
run_step("build the host program" ${CMAKE_COMMAND} --build ${host_build})

run_step("run the host program" ${host_build}/vagent_host)
cmake_host_system_information(RESULT machine QUERY HOSTNAME)
string(REGEX REPLACE "\\..*" "" machine "${machine}")
if(NOT step_output STREQUAL "host name: ${machine}\n")
  message(FATAL_ERROR "host program printed \"${step_output}\", expected \"host name: ${machine}\"")
endif()
message(STATUS "${step_output}host program built and run against the installed package")
