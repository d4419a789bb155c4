# What `cmake --install` lays down and what `cpack` packs: the library, its
# import library on Windows, the public headers, the two programs, and a CMake
# package so that a host program says find_package(vagent) and links
# vagent::vagent.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(VAGENT_CMAKE_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/vagent)

# Inside the build tree the headers come from the source tree; an installed
# package names its own include directory instead.
set_property(TARGET vagent PROPERTY INTERFACE_INCLUDE_DIRECTORIES
  "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>")

# A sanitized library needs its runtimes loaded first, so a host program that
# links it links them too.
if(VAGENT_SANITIZE)
  set_property(TARGET vagent APPEND PROPERTY INTERFACE_LINK_OPTIONS
    -fsanitize=address,undefined)
endif()

install(TARGETS vagent EXPORT vagentTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/vagent
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h")

install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})

install(TARGETS vagentd RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# The client links the shared library, which lies in the library directory
# beside the program's own.
if(TARGET vagentctl)
  file(RELATIVE_PATH VAGENT_BIN_TO_LIB ${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}
       ${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR})
  set_property(TARGET vagentctl PROPERTY INSTALL_RPATH "$ORIGIN/${VAGENT_BIN_TO_LIB}")
  install(TARGETS vagentctl RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT vagentTargets
  NAMESPACE vagent::
  DESTINATION ${VAGENT_CMAKE_INSTALL_DIR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/vagentConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/vagentConfig.cmake
  INSTALL_DESTINATION ${VAGENT_CMAKE_INSTALL_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/vagentConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vagentConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/vagentConfigVersion.cmake
  DESTINATION ${VAGENT_CMAKE_INSTALL_DIR})

# One archive per platform: a .zip of the Windows binaries, a .tar.gz of the
# Linux ones, named after the system and its word size.
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(CPACK_SYSTEM_NAME windows-i686)
  else()
    set(CPACK_SYSTEM_NAME windows-x86_64)
  endif()
else()
  set(CPACK_GENERATOR TGZ)
  set(CPACK_SYSTEM_NAME linux-${CMAKE_SYSTEM_PROCESSOR})
endif()
set(CPACK_PACKAGE_NAME vagent)
set(CPACK_PACKAGE_VENDOR vagent)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
  "Terminal-server administration library, its agent service and its client")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CHECKSUM SHA256)
# The archives carry the binaries without their debugging sections.
set(CPACK_STRIP_FILES ON)
include(CPack)
