#pragma once

#include <string>

#include "vagent/Export.h"

// Thrown by value by the VByteStream constructor when its buffer cannot be
// allocated; the one exception the library throws on purpose.
class VAGENT_API VStreamException {
public:
    explicit VStreamException(std::string message) : message_(std::move(message)) {}
    const std::string& GetMessage() const { return message_; }

private:
    std::string message_;
};
