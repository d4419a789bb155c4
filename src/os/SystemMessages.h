#pragma once

#include <cstdint>
#include <string>

#include "os/Facilities.h"

namespace vagent::os {

// The system's message table.
class SystemMessages {
public:
    virtual ~SystemMessages() = default;
    // Mirrors FormatMessageA from the system's table, in the default
    // language, inserts ignored, the buffer allocated by the system and
    // released here: returns 0 with the text, or the failure status (317 when
    // the system has no text for the code).
    virtual std::uint32_t MessageText(std::uint32_t code, std::string& text) = 0;
};

template <>
SystemMessages& RealFacility<SystemMessages>();

}  // namespace vagent::os
