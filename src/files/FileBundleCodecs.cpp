#include "files/FileBundleCodecs.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>

#include "os/FileSystem.h"
#include "task/ByteOrder.h"
#include "vagent/DataItemCursor.h"
#include "vagent/DllLog.h"

namespace vagent::files {
namespace {

constexpr std::uint32_t kFieldSize = 4;
constexpr std::uint64_t kLargestPayload = 0xFFFFFFFFull - kFieldSize;

// The length of a file that exists and opens, 0 otherwise.
std::uint64_t PlannedLength(const std::string& path) {
    os::FileSystem& files = os::Files();
    if (!files.Exists(path)) {
        return 0;
    }
    std::FILE* file = files.Open(path, "r");
    if (file == nullptr) {
        return 0;
    }
    const std::int64_t length = files.FileLength(file);
    std::fclose(file);
    return length > 0 ? static_cast<std::uint64_t>(length) : 0;
}

std::uint8_t* WriteItemHeader(std::uint8_t* at, std::uint32_t length) {
    WriteBigEndian32(at, length);
    return at + kFieldSize;
}

// Writes one pair as planned in the first pass; a file that shrank since is
// padded with zero bytes so that the item keeps the length it announces.
std::uint8_t* WritePair(std::uint8_t* at, const std::string& name, std::FILE* file,
                        std::uint32_t planned) {
    at = WriteItemHeader(at, static_cast<std::uint32_t>(name.size()));
    std::memcpy(at, name.data(), name.size());
    at = WriteItemHeader(at + name.size(), planned);
    const std::size_t got = std::fread(at, 1, planned, file);
    std::memset(at + got, 0, planned - got);
    return at + planned;
}

}  // namespace

int Files2Result(const std::vector<std::string>& files, const std::vector<std::string>& names,
                 std::uint8_t*& block, std::uint32_t& blockSize) {
    if (files.size() != names.size()) {
        DllLogPrintf("Files2Result : vecFiles.size != vecFilesDes.size");
        return 0;
    }
    std::vector<std::uint64_t> planned;
    std::uint64_t payload = 0;
    for (std::size_t index = 0; index < files.size(); ++index) {
        planned.push_back(PlannedLength(files[index]));
        if (planned.back() != 0) {
            payload += names[index].size() + planned.back() + 2 * kFieldSize;
        }
    }
    std::uint8_t* filled = nullptr;
    if (payload <= kLargestPayload) {
        filled = new (std::nothrow) std::uint8_t[static_cast<std::size_t>(payload + kFieldSize)];
    }
    if (filled == nullptr) {
        DllLogPrintf("Files2Result : new [%d] bytes failed",
                     static_cast<int>(payload + kFieldSize));
        return 0;
    }
    os::FileSystem& fileSystem = os::Files();
    std::uint8_t* at = filled + kFieldSize;
    for (std::size_t index = 0; index < files.size(); ++index) {
        if (!fileSystem.Exists(files[index])) {
            DllLogPrintf("File [%s] Not Exit", files[index].c_str());
            continue;
        }
        std::FILE* file = fileSystem.Open(files[index], "rb");
        if (file == nullptr) {
            DllLogPrintf("fopen [%s] failed", files[index].c_str());
            continue;
        }
        if (planned[index] != 0) {
            at = WritePair(at, names[index], file, static_cast<std::uint32_t>(planned[index]));
        }
        std::fclose(file);
    }
    const auto written = static_cast<std::uint32_t>(at - filled - kFieldSize);
    WriteBigEndian32(filled, written);
    block = filled;
    blockSize = written + kFieldSize;
    return 1;
}

int Result2Files(const std::uint8_t* payload, std::uint32_t length) {
    DataItemCursor cursor(payload, length);
    std::string name;
    for (std::uint32_t index = 0;; ++index) {
        std::uint32_t itemLength = 0;
        const std::uint8_t* item = cursor.GetNextDataItem(itemLength);
        if (item == nullptr && itemLength == 0) {
            return 1;
        }
        if (item == nullptr) {
            DllLogPrintf("Result2Files : Data Format Error");
            return 0;
        }
        if (index % 2 == 0) {
            const std::uint8_t* end = std::find(item, item + itemLength, 0);
            name.assign(reinterpret_cast<const char*>(item), static_cast<std::size_t>(end - item));
            continue;
        }
        std::FILE* file = os::Files().Open(name, "wb");
        if (file == nullptr) {
            DllLogPrintf("Create File [%s] Failed", name.c_str());
            return 0;
        }
        std::fwrite(item, 1, itemLength, file);
        std::fclose(file);
    }
}

}  // namespace vagent::files
