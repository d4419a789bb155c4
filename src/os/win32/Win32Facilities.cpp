#include "os/Facilities.h"
#include "os/win32/Win32FileSystem.h"
#include "os/win32/Win32HostFacts.h"
#include "os/win32/Win32TextCodec.h"

namespace vagent::os {

const Facilities& RealFacilities() {
    static Win32TextCodec text;
    static Win32HostFacts host;
    static Win32FileSystem files;
    static const Facilities real{&text, &host, &files};
    return real;
}

}  // namespace vagent::os
