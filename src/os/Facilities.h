#pragma once

namespace vagent::os {

class TextCodec;
class HostFacts;
class FileSystem;

// Each facility (an interface of this folder) has one process-wide slot.
// While the slot is empty the real implementation of this build (Win32 or
// POSIX) answers; a test fills the slot with a fake for a scope.

// The real implementation; each facility's header declares its
// specialisation and the implementation in use defines it.
template <class Facility>
Facility& RealFacility();

template <class Facility>
Facility*& InstalledSlot() {
    static Facility* slot = nullptr;
    return slot;
}

template <class Facility>
Facility& Installed() {
    Facility* replacement = InstalledSlot<Facility>();
    return replacement != nullptr ? *replacement : RealFacility<Facility>();
}

// Installs a replacement for the lifetime of the scope and puts back what was
// installed before when it ends. Scopes nest; they are made and ended on one
// thread while no other thread uses the library.
template <class Facility>
class ScopedFacility {
public:
    explicit ScopedFacility(Facility& replacement) : previous_(InstalledSlot<Facility>()) {
        InstalledSlot<Facility>() = &replacement;
    }
    ~ScopedFacility() { InstalledSlot<Facility>() = previous_; }
    ScopedFacility(const ScopedFacility&) = delete;
    ScopedFacility& operator=(const ScopedFacility&) = delete;

private:
    Facility* previous_;
};

TextCodec& Text();
HostFacts& Host();
FileSystem& Files();

}  // namespace vagent::os
