#include "os/Facilities.h"

namespace vagent::os {
namespace {

Facilities& InstalledSlot() {
    static Facilities installed = RealFacilities();
    return installed;
}

template <class Facility>
void Replace(Facility*& slot, Facility* replacement) {
    if (replacement != nullptr) {
        slot = replacement;
    }
}

}  // namespace

const Facilities& Installed() { return InstalledSlot(); }

TextCodec& Text() { return *InstalledSlot().text; }
HostFacts& Host() { return *InstalledSlot().host; }
FileSystem& Files() { return *InstalledSlot().files; }

ScopedFacilities::ScopedFacilities(const Facilities& replacement) : previous_(InstalledSlot()) {
    Facilities& slot = InstalledSlot();
    Replace(slot.text, replacement.text);
    Replace(slot.host, replacement.host);
    Replace(slot.files, replacement.files);
}

ScopedFacilities::~ScopedFacilities() { InstalledSlot() = previous_; }

}  // namespace vagent::os
