set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)
set(VAGENT_MINGW_PREFIX i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-common.cmake)

# A loader found once and removed since is looked for again.
if(VAGENT_WINE32 AND NOT EXISTS "${VAGENT_WINE32}")
  unset(VAGENT_WINE32 CACHE)
endif()
# A 64-bit Wine starts an i686 program and exits 0 without running it, so
# only a 32-bit loader is taken as an emulator.
find_program(VAGENT_WINE32 wine PATHS /usr/lib/wine /usr/lib/i386-linux-gnu/wine NO_DEFAULT_PATH)
if(VAGENT_WINE32)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine-run;${VAGENT_WINE32})
endif()
