#pragma once

#include "os/Com.h"

// COM for the calling thread for the life of one directory operation: it is
// initialised when the scope begins, whatever the result, and uninitialised
// exactly once when it ends. Declared before any directory object, so every
// interface is released before the uninitialisation.
class ComScope {
public:
    ComScope() { vagent::os::Installed<vagent::os::Com>().Initialize(); }
    ~ComScope() { vagent::os::Installed<vagent::os::Com>().Uninitialize(); }
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;
};
