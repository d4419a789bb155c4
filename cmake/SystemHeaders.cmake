# Header-only libraries from the system (CLI11, nlohmann/json) for every tier.
# The mingw toolchains search only their own sysroot, so a program sees them
# through a directory of the build tree that holds nothing but links to them.
function(vagent_link_system_headers directory)
  file(MAKE_DIRECTORY ${directory})
  foreach(name ${ARGN})
    if(NOT EXISTS ${directory}/${name})
      file(CREATE_LINK /usr/include/${name} ${directory}/${name} SYMBOLIC)
    endif()
  endforeach()
endfunction()
