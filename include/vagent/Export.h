#pragma once

// Classes and functions that a host program reaches through vagent.dll or
// libvagent.so carry VAGENT_API. The library's own objects are compiled with
// VAGENT_BUILDING; a program that links the static archive defines
// VAGENT_STATIC and sees no import decoration.
#if defined(_WIN32)
#if defined(VAGENT_BUILDING)
#define VAGENT_API __declspec(dllexport)
#elif defined(VAGENT_STATIC)
#define VAGENT_API
#else
#define VAGENT_API __declspec(dllimport)
#endif
#else
#define VAGENT_API __attribute__((visibility("default")))
#endif

// printf-style argument checking for the library's formatting entries.
#if defined(__MINGW32__)
#define VAGENT_PRINTF_FORMAT(formatIndex, firstArgument) \
    __attribute__((format(gnu_printf, formatIndex, firstArgument)))
#elif defined(__GNUC__)
#define VAGENT_PRINTF_FORMAT(formatIndex, firstArgument) \
    __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define VAGENT_PRINTF_FORMAT(formatIndex, firstArgument)
#endif
