// Feeds arbitrary payloads to the file family's result decoders: the first
// byte chooses the decoder, the rest is the payload. The files that
// Result2Files would create go to a fake file system whose every stream is
// the null device, so that no input ever writes a file anywhere; any other
// file-system call is unexpected and aborts.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "DecoderChoice.h"
#include "files/FileBundleCodecs.h"
#include "files/ListingCodecs.h"
#include "os/FileSystem.h"

namespace {

class NullDeviceFileSystem final : public vagent::os::FileSystem {
public:
    std::FILE* Open(const std::string& /*path*/, const char* mode) override {
        if (std::string(mode) != "wb") {
            std::abort();
        }
        return std::fopen("/dev/null", "wb");
    }

    bool Exists(const std::string&) override { std::abort(); }
    std::uint32_t Size(const std::string&, std::uint64_t&) override { std::abort(); }
    std::uint32_t Copy(const std::string&, const std::string&, bool) override { std::abort(); }
    std::uint32_t Remove(const std::string&) override { std::abort(); }
    std::uint32_t Attributes(const std::string&, std::uint32_t&) override { std::abort(); }
    std::uint32_t AttributesEx(const std::string&, vagent::os::FileAttributeData&) override {
        std::abort();
    }
    std::uint32_t SetAttributes(const std::string&, std::uint32_t) override { std::abort(); }
    std::uint32_t FindFirst(const std::string&, vagent::os::FindHandle&,
                            vagent::os::FindEntry&) override {
        std::abort();
    }
    std::uint32_t FindNext(vagent::os::FindHandle, vagent::os::FindEntry&) override {
        std::abort();
    }
    void FindClose(vagent::os::FindHandle) override { std::abort(); }
    std::uint32_t CreateDirectoryTree(const std::string&) override { std::abort(); }
    std::int64_t FileLength(std::FILE*) override { std::abort(); }
    std::uint32_t LogicalDrives() override { std::abort(); }
    std::uint32_t ConnectedDiskNames(std::vector<std::string>&) override { std::abort(); }
    std::uint32_t LastError() override { std::abort(); }
};

void DecodeListing(const std::uint8_t* payload, std::uint32_t size) {
    std::vector<FileAttrA> entries;
    vagent::files::Result2FileAttr(payload, size, entries);
}

void DecodeExistence(const std::uint8_t* payload, std::uint32_t size) {
    std::vector<ExistAttr> answers;
    vagent::files::Result2ExistAttr(payload, size, answers);
}

void DecodeFiles(const std::uint8_t* payload, std::uint32_t size) {
    static NullDeviceFileSystem files;
    vagent::os::ScopedFacility<vagent::os::FileSystem> scope(files);
    vagent::files::Result2Files(payload, size);
}

using vagent::fuzz::Decoder;

constexpr Decoder kDecoders[] = {DecodeListing, DecodeExistence, DecodeFiles};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return vagent::fuzz::DecodeWithChosen(kDecoders, data, size);
}
