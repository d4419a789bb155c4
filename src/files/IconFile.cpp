#include "files/IconFile.h"

namespace vagent::files {
namespace {

constexpr std::uint32_t kInvalidData = 13;
constexpr std::size_t kHeaderSize = 6;
constexpr std::size_t kGroupEntrySize = 14;
constexpr std::size_t kFileEntrySize = 16;
// The entry's leading fields that the file keeps as the group has them:
// width, height, colour count, reserved, planes, bit count.
constexpr std::size_t kSharedFieldsSize = 8;
constexpr std::size_t kResourceIdOffset = 12;

std::uint16_t ReadLittleEndian16(const std::uint8_t* at) {
    return static_cast<std::uint16_t>(at[0] | at[1] << 8);
}

void AppendLittleEndian32(std::vector<std::uint8_t>& bytes, std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

}  // namespace

std::uint32_t BuildIconFile(os::ModuleResources& resources, os::ModuleHandle module,
                            const std::vector<std::uint8_t>& group,
                            std::vector<std::uint8_t>& iconFile) {
    if (group.size() < kHeaderSize) {
        return kInvalidData;
    }
    const std::uint16_t count = ReadLittleEndian16(group.data() + 4);
    if (group.size() < kHeaderSize + count * kGroupEntrySize) {
        return kInvalidData;
    }
    std::vector<std::vector<std::uint8_t>> images(count);
    for (std::uint16_t index = 0; index < count; ++index) {
        os::ResourceName name;
        name.id = ReadLittleEndian16(group.data() + kHeaderSize + index * kGroupEntrySize +
                                     kResourceIdOffset);
        const std::uint32_t status =
            resources.ResourceBytes(module, name, os::kResourceIcon, images[index]);
        if (status != 0) {
            return status;
        }
    }
    iconFile.assign(group.begin(), group.begin() + kHeaderSize);
    auto offset = static_cast<std::uint32_t>(kHeaderSize + count * kFileEntrySize);
    for (std::uint16_t index = 0; index < count; ++index) {
        const std::uint8_t* entry = group.data() + kHeaderSize + index * kGroupEntrySize;
        iconFile.insert(iconFile.end(), entry, entry + kSharedFieldsSize);
        AppendLittleEndian32(iconFile, static_cast<std::uint32_t>(images[index].size()));
        AppendLittleEndian32(iconFile, offset);
        offset += static_cast<std::uint32_t>(images[index].size());
    }
    for (const std::vector<std::uint8_t>& image : images) {
        iconFile.insert(iconFile.end(), image.begin(), image.end());
    }
    return 0;
}

}  // namespace vagent::files
