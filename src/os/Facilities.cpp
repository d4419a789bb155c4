#include "os/Facilities.h"

#include "os/FileSystem.h"
#include "os/HostFacts.h"
#include "os/TextCodec.h"

namespace vagent::os {

TextCodec& Text() {
    return Installed<TextCodec>();
}
HostFacts& Host() {
    return Installed<HostFacts>();
}
FileSystem& Files() {
    return Installed<FileSystem>();
}

}  // namespace vagent::os
