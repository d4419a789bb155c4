#include "os/NetApi.h"
#include "os/win32/WindowsHeaders.h"

#include <lm.h>

namespace vagent::os {
namespace {

// A buffer that a NetAPI call allocated, freed on every path.
class NetBuffer {
public:
    NetBuffer() = default;
    ~NetBuffer() {
        if (buffer_ != nullptr) {
            NetApiBufferFree(buffer_);
        }
    }
    NetBuffer(const NetBuffer&) = delete;
    NetBuffer& operator=(const NetBuffer&) = delete;

    LPBYTE* Address() { return &buffer_; }
    template <class Record>
    const Record* As() const {
        return reinterpret_cast<const Record*>(buffer_);
    }
    bool Returned() const { return buffer_ != nullptr; }

private:
    LPBYTE buffer_ = nullptr;
};

LPWSTR Writable(std::wstring& text) {
    return &text[0];
}

LPWSTR OptionalText(bool present, std::wstring& text) {
    return present ? Writable(text) : nullptr;
}

std::wstring TextOf(LPCWSTR text) {
    return text != nullptr ? std::wstring(text) : std::wstring();
}

// Copies the names of a level-0 style record array into the batch.
template <class Record, class Field>
void CopyNames(const NetBuffer& buffer, DWORD read, DWORD total, Field field,
               NetBatch<std::wstring>& batch) {
    batch.bufferReturned = buffer.Returned();
    batch.entriesRead = read;
    batch.totalEntries = total;
    batch.entries.clear();
    const Record* records = buffer.As<Record>();
    for (DWORD i = 0; records != nullptr && i < read; ++i) {
        batch.entries.push_back(TextOf(records[i].*field));
    }
}

// Level-3 member records pointing into copies of the names they carry.
class MemberRecords {
public:
    explicit MemberRecords(const std::vector<std::wstring>& members)
        : names_(members), records_(names_.size()) {
        for (std::size_t i = 0; i < names_.size(); ++i) {
            records_[i].lgrmi3_domainandname = Writable(names_[i]);
        }
    }
    LPBYTE Buffer() { return reinterpret_cast<LPBYTE>(records_.data()); }
    DWORD Count() const { return static_cast<DWORD>(records_.size()); }

private:
    std::vector<std::wstring> names_;
    std::vector<LOCALGROUP_MEMBERS_INFO_3> records_;
};

class Win32NetApi final : public NetApi {
public:
    std::uint32_t ServerEnum(const wchar_t* server, std::uint32_t level,
                             std::uint32_t preferredMaximumLength, std::uint32_t serverType,
                             const wchar_t* domain, std::uint32_t& resumeHandle,
                             NetBatch<ServerInfo101>& batch) override {
        NetBuffer buffer;
        DWORD read = 0;
        DWORD total = 0;
        DWORD resume = resumeHandle;
        const NET_API_STATUS status =
            NetServerEnum(server, level, buffer.Address(), preferredMaximumLength, &read, &total,
                          serverType, domain, &resume);
        resumeHandle = resume;
        batch.bufferReturned = buffer.Returned();
        batch.entriesRead = read;
        batch.totalEntries = total;
        batch.entries.clear();
        const auto* records = buffer.As<SERVER_INFO_101>();
        for (DWORD i = 0; records != nullptr && i < read; ++i) {
            batch.entries.push_back(
                ServerInfo101{TextOf(records[i].sv101_name), records[i].sv101_type});
        }
        return status;
    }

    std::uint32_t UserAdd(const wchar_t* server, std::uint32_t level,
                          const UserInfo1& user) override {
        UserInfo1 copy = user;
        USER_INFO_1 record = {};
        record.usri1_name = Writable(copy.name);
        record.usri1_password = Writable(copy.password);
        record.usri1_password_age = copy.passwordAge;
        record.usri1_priv = copy.privilege;
        record.usri1_home_dir = OptionalText(copy.hasHomeDirectory, copy.homeDirectory);
        record.usri1_comment = OptionalText(copy.hasComment, copy.comment);
        record.usri1_flags = copy.flags;
        record.usri1_script_path = OptionalText(copy.hasScriptPath, copy.scriptPath);
        DWORD parameterError = 0;
        return NetUserAdd(server, level, reinterpret_cast<LPBYTE>(&record), &parameterError);
    }

    std::uint32_t UserDel(const wchar_t* server, const std::wstring& user) override {
        return NetUserDel(server, user.c_str());
    }

    std::uint32_t UserSetPassword(const wchar_t* server, const std::wstring& user,
                                  std::uint32_t level, const std::wstring& password) override {
        std::wstring copy = password;
        USER_INFO_1003 record = {};
        record.usri1003_password = Writable(copy);
        DWORD parameterError = 0;
        return NetUserSetInfo(server, user.c_str(), level, reinterpret_cast<LPBYTE>(&record),
                              &parameterError);
    }

    std::uint32_t UserEnum(const wchar_t* server, std::uint32_t level, std::uint32_t filter,
                           std::uint32_t preferredMaximumLength, std::uint32_t& resumeHandle,
                           NetBatch<std::wstring>& batch) override {
        NetBuffer buffer;
        DWORD read = 0;
        DWORD total = 0;
        DWORD resume = resumeHandle;
        const NET_API_STATUS status = NetUserEnum(server, level, filter, buffer.Address(),
                                                  preferredMaximumLength, &read, &total, &resume);
        resumeHandle = resume;
        CopyNames<USER_INFO_0>(buffer, read, total, &USER_INFO_0::usri0_name, batch);
        return status;
    }

    std::uint32_t UserGetComment(const wchar_t* server, const std::wstring& user,
                                 std::uint32_t level, std::wstring& comment) override {
        NetBuffer buffer;
        const NET_API_STATUS status = NetUserGetInfo(server, user.c_str(), level, buffer.Address());
        if (status == NERR_Success && buffer.Returned()) {
            comment = TextOf(buffer.As<USER_INFO_10>()->usri10_comment);
        }
        return status;
    }

    std::uint32_t UserGetGroups(const wchar_t* server, const std::wstring& user,
                                std::uint32_t level, std::uint32_t preferredMaximumLength,
                                NetBatch<std::wstring>& batch) override {
        NetBuffer buffer;
        DWORD read = 0;
        DWORD total = 0;
        const NET_API_STATUS status = NetUserGetGroups(
            server, user.c_str(), level, buffer.Address(), preferredMaximumLength, &read, &total);
        CopyNames<GROUP_USERS_INFO_0>(buffer, read, total, &GROUP_USERS_INFO_0::grui0_name, batch);
        return status;
    }

    std::uint32_t GroupGetComment(const wchar_t* server, const std::wstring& group,
                                  std::uint32_t level, std::wstring& comment) override {
        NetBuffer buffer;
        const NET_API_STATUS status =
            NetGroupGetInfo(server, group.c_str(), level, buffer.Address());
        if (status == NERR_Success && buffer.Returned()) {
            comment = TextOf(buffer.As<GROUP_INFO_1>()->grpi1_comment);
        }
        return status;
    }

    std::uint32_t GroupDelUser(const wchar_t* server, const std::wstring& group,
                               const std::wstring& user) override {
        return NetGroupDelUser(server, group.c_str(), user.c_str());
    }

    std::uint32_t LocalGroupAdd(const wchar_t* server, std::uint32_t level,
                                const std::wstring& group) override {
        std::wstring copy = group;
        LOCALGROUP_INFO_0 record = {};
        record.lgrpi0_name = Writable(copy);
        DWORD parameterError = 0;
        return NetLocalGroupAdd(server, level, reinterpret_cast<LPBYTE>(&record), &parameterError);
    }

    std::uint32_t LocalGroupDel(const wchar_t* server, const std::wstring& group) override {
        return NetLocalGroupDel(server, group.c_str());
    }

    std::uint32_t LocalGroupEnum(const wchar_t* server, std::uint32_t level,
                                 std::uint32_t preferredMaximumLength, std::uintptr_t& resumeHandle,
                                 NetBatch<std::wstring>& batch) override {
        NetBuffer buffer;
        DWORD read = 0;
        DWORD total = 0;
        DWORD_PTR resume = resumeHandle;
        const NET_API_STATUS status = NetLocalGroupEnum(
            server, level, buffer.Address(), preferredMaximumLength, &read, &total, &resume);
        resumeHandle = resume;
        CopyNames<LOCALGROUP_INFO_0>(buffer, read, total, &LOCALGROUP_INFO_0::lgrpi0_name, batch);
        return status;
    }

    std::uint32_t LocalGroupGetMembers(const wchar_t* server, const std::wstring& group,
                                       std::uint32_t level, std::uint32_t preferredMaximumLength,
                                       std::uintptr_t& resumeHandle,
                                       NetBatch<std::wstring>& batch) override {
        NetBuffer buffer;
        DWORD read = 0;
        DWORD total = 0;
        DWORD_PTR resume = resumeHandle;
        const NET_API_STATUS status =
            NetLocalGroupGetMembers(server, group.c_str(), level, buffer.Address(),
                                    preferredMaximumLength, &read, &total, &resume);
        resumeHandle = resume;
        CopyNames<LOCALGROUP_MEMBERS_INFO_1>(buffer, read, total,
                                             &LOCALGROUP_MEMBERS_INFO_1::lgrmi1_name, batch);
        return status;
    }

    std::uint32_t LocalGroupAddMembers(const wchar_t* server, const std::wstring& group,
                                       std::uint32_t level,
                                       const std::vector<std::wstring>& members) override {
        MemberRecords records(members);
        return NetLocalGroupAddMembers(server, group.c_str(), level, records.Buffer(),
                                       records.Count());
    }

    std::uint32_t LocalGroupDelMembers(const wchar_t* server, const std::wstring& group,
                                       std::uint32_t level,
                                       const std::vector<std::wstring>& members) override {
        MemberRecords records(members);
        return NetLocalGroupDelMembers(server, group.c_str(), level, records.Buffer(),
                                       records.Count());
    }

    std::uint32_t LastError() override { return GetLastError(); }
    void SetLastError(std::uint32_t error) override { ::SetLastError(error); }

    void DebugOutput(const std::wstring& text) override { OutputDebugStringW(text.c_str()); }
};

}  // namespace

template <>
NetApi& RealFacility<NetApi>() {
    static Win32NetApi real;
    return real;
}

}  // namespace vagent::os
