#pragma once

namespace vagent::os {

class TextCodec;
class HostFacts;
class FileSystem;

// The operating-system implementation in use, one pointer per facility.
// Every pointer is always set: the real implementation is installed at start.
struct Facilities {
    TextCodec* text = nullptr;
    HostFacts* host = nullptr;
    FileSystem* files = nullptr;
};

// The process-wide installed facilities.
const Facilities& Installed();

TextCodec& Text();
HostFacts& Host();
FileSystem& Files();

// The real implementation of this build (Win32 or POSIX).
const Facilities& RealFacilities();

// Replaces the installed facilities for the lifetime of the scope and puts
// back the previous ones when it ends. A null member keeps the facility that
// was installed, so a test replaces only what it fakes. Scopes nest; they are
// made and ended on one thread while no other thread uses the library.
class ScopedFacilities {
public:
    explicit ScopedFacilities(const Facilities& replacement);
    ~ScopedFacilities();
    ScopedFacilities(const ScopedFacilities&) = delete;
    ScopedFacilities& operator=(const ScopedFacilities&) = delete;

private:
    Facilities previous_;
};

}  // namespace vagent::os
