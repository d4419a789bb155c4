#include "os/NetApi.h"
#include "os/Status.h"

namespace vagent::os {
namespace {

// A POSIX host has no Windows account database: every call answers "not
// supported" and hands out nothing.
class PosixNetApi final : public NetApi {
public:
    std::uint32_t ServerEnum(const wchar_t*, std::uint32_t, std::uint32_t, std::uint32_t,
                             const wchar_t*, std::uint32_t&,
                             NetBatch<ServerInfo101>& batch) override {
        batch = NetBatch<ServerInfo101>();
        return kNotSupported;
    }
    std::uint32_t UserAdd(const wchar_t*, std::uint32_t, const UserInfo1&) override {
        return kNotSupported;
    }
    std::uint32_t UserDel(const wchar_t*, const std::wstring&) override { return kNotSupported; }
    std::uint32_t UserSetPassword(const wchar_t*, const std::wstring&, std::uint32_t,
                                  const std::wstring&) override {
        return kNotSupported;
    }
    std::uint32_t UserEnum(const wchar_t*, std::uint32_t, std::uint32_t, std::uint32_t,
                           std::uint32_t&, NetBatch<std::wstring>& batch) override {
        batch = NetBatch<std::wstring>();
        return kNotSupported;
    }
    std::uint32_t UserGetComment(const wchar_t*, const std::wstring&, std::uint32_t,
                                 std::wstring&) override {
        return kNotSupported;
    }
    std::uint32_t UserGetGroups(const wchar_t*, const std::wstring&, std::uint32_t, std::uint32_t,
                                NetBatch<std::wstring>& batch) override {
        batch = NetBatch<std::wstring>();
        return kNotSupported;
    }
    std::uint32_t GroupGetComment(const wchar_t*, const std::wstring&, std::uint32_t,
                                  std::wstring&) override {
        return kNotSupported;
    }
    std::uint32_t GroupDelUser(const wchar_t*, const std::wstring&, const std::wstring&) override {
        return kNotSupported;
    }
    std::uint32_t LocalGroupAdd(const wchar_t*, std::uint32_t, const std::wstring&) override {
        return kNotSupported;
    }
    std::uint32_t LocalGroupDel(const wchar_t*, const std::wstring&) override {
        return kNotSupported;
    }
    std::uint32_t LocalGroupEnum(const wchar_t*, std::uint32_t, std::uint32_t, std::uintptr_t&,
                                 NetBatch<std::wstring>& batch) override {
        batch = NetBatch<std::wstring>();
        return kNotSupported;
    }
    std::uint32_t LocalGroupGetMembers(const wchar_t*, const std::wstring&, std::uint32_t,
                                       std::uint32_t, std::uintptr_t&,
                                       NetBatch<std::wstring>& batch) override {
        batch = NetBatch<std::wstring>();
        return kNotSupported;
    }
    std::uint32_t LocalGroupAddMembers(const wchar_t*, const std::wstring&, std::uint32_t,
                                       const std::vector<std::wstring>&) override {
        return kNotSupported;
    }
    std::uint32_t LocalGroupDelMembers(const wchar_t*, const std::wstring&, std::uint32_t,
                                       const std::vector<std::wstring>&) override {
        return kNotSupported;
    }
    std::uint32_t LastError() override { return kNotSupported; }
    void SetLastError(std::uint32_t) override {}
    void DebugOutput(const std::wstring&) override {}
};

}  // namespace

template <>
NetApi& RealFacility<NetApi>() {
    static PosixNetApi real;
    return real;
}

}  // namespace vagent::os
