#include "os/Facilities.h"
#include "os/posix/PosixFileSystem.h"
#include "os/posix/PosixHostFacts.h"
#include "os/posix/PosixTextCodec.h"

namespace vagent::os {

const Facilities& RealFacilities() {
    static PosixTextCodec text;
    static PosixHostFacts host;
    static PosixFileSystem files;
    static const Facilities real{&text, &host, &files};
    return real;
}

}  // namespace vagent::os
