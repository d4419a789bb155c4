#pragma once

#include <cstdint>
#include <new>
#include <stdexcept>

#include "vagent/ErrorCodes.h"
#include "vagent/VStreamException.h"

namespace vagent::facade {

// The facade's exception boundary: whatever a method's body throws stops
// here. Running out of memory, in whichever form the standard library or the
// byte stream reports it, becomes code 8 where the method keeps a code
// (errorCode not null); the method then answers its failure value.
template <class Body>
int Shielded(int failure, std::uint32_t* errorCode, Body body) noexcept {
    bool outOfMemory = false;
    try {
        return body();
    } catch (const std::bad_alloc&) {
        outOfMemory = true;
    } catch (const std::length_error&) {
        outOfMemory = true;
    } catch (const VStreamException&) {
        outOfMemory = true;
    } catch (...) {
    }
    if (outOfMemory && errorCode != nullptr) {
        *errorCode = kErrorNotEnoughMemory;
    }
    return failure;
}

}  // namespace vagent::facade
