#pragma once

#include <cstdint>
#include <vector>

#include "os/ModuleResources.h"

namespace vagent::files {

// Builds an icon file from a module's icon group: the 6-byte header, one
// 16-byte directory entry per image (the group's entry with the image's
// offset in the file instead of its resource number), then the images in
// order. Returns 0, or the status of the resource read that failed, or 13
// (invalid data) for a group that breaks its own bounds.
std::uint32_t BuildIconFile(os::ModuleResources& resources, os::ModuleHandle module,
                            const std::vector<std::uint8_t>& group,
                            std::vector<std::uint8_t>& iconFile);

}  // namespace vagent::files
