#pragma once

#include <cstdint>
#include <string>

#include "vagent/HttpFun.h"
#include "vagent/VFileTask.h"

namespace vagent::facade {

// The receiving end of a copy that a service streams to this machine: every
// frame's name must lie under the destination the request named, else the
// transfer stops with 0xE6000001 before that frame's bytes are written. The
// service's end frame decides the outcome.
class TreeDownload {
public:
    TreeDownload(std::uintptr_t connection, HTTP_FUN* callbacks, std::string destination);

    // True when the end frame said 0; code is then 0, otherwise the end
    // frame's status or the failure's.
    bool Run(std::uint32_t& code);

private:
    bool ApplyFrame(const FileFrameHeader& header, std::uint32_t& code);
    std::uint32_t TaskCode() const;

    VFileTask task_;
    std::uintptr_t connection_;
    HTTP_FUN* callbacks_;
    std::string destination_;
};

}  // namespace vagent::facade
