#include "os/Directory.h"
#include "os/Status.h"

namespace vagent::os {
namespace {

// A POSIX host has no directory service: nothing binds.
class PosixDirectory final : public Directory {
public:
    std::int32_t BindContainer(const std::wstring&,
                               std::unique_ptr<DirectoryContainer>& container) override {
        container.reset();
        return kDirectoryNotSupported;
    }
    std::int32_t BindObject(const std::wstring&,
                            std::unique_ptr<DirectoryObject>& object) override {
        object.reset();
        return kDirectoryNotSupported;
    }
    std::int32_t BindUser(const std::wstring&, std::unique_ptr<DirectoryUser>& user) override {
        user.reset();
        return kDirectoryNotSupported;
    }
    std::int32_t BindGroup(const std::wstring&, std::unique_ptr<DirectoryGroup>& group) override {
        group.reset();
        return kDirectoryNotSupported;
    }
    std::int32_t BindSearch(const std::wstring&,
                            std::unique_ptr<DirectorySearch>& search) override {
        search.reset();
        return kDirectoryNotSupported;
    }
    std::int32_t LastExtendedError(std::uint32_t& error) override {
        error = kNotSupported;
        return kDirectoryOk;
    }
    std::uint32_t LastError() override { return kNotSupported; }
};

}  // namespace

template <>
Directory& RealFacility<Directory>() {
    static PosixDirectory real;
    return real;
}

}  // namespace vagent::os
