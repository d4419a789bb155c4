#include "fakes/FakeDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <optional>

#include "fakes/FakeLocalAccounts.h"

namespace vagent::test {
namespace {

constexpr std::uint32_t kMemberInAlias = 1378;
constexpr std::uint32_t kMemberNotInAlias = 1377;
constexpr std::uint32_t kMoreData = 234;
constexpr std::int32_t kMemberInAliasResult = static_cast<std::int32_t>(0x80070562u);
constexpr std::int32_t kMemberNotInAliasResult = static_cast<std::int32_t>(0x80070561u);
constexpr std::int32_t kPropertyNotFound = static_cast<std::int32_t>(0x8000500Du);
constexpr std::int32_t kColumnNotSet = static_cast<std::int32_t>(0x80005010u);
const wchar_t kUserFilter[] = L"(&(objectCategory=person)(objectClass=user))";
const wchar_t kGroupFilter[] = L"(&(objectClass=group))";

std::wstring Lower(std::wstring text) {
    for (wchar_t& c : text) {
        c = static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(c)));
    }
    return text;
}

// The key of the object's parent: what follows its first comma.
std::wstring ParentKey(const std::wstring& key) {
    const std::size_t comma = key.find(L',');
    return comma == std::wstring::npos ? std::wstring() : key.substr(comma + 1);
}

bool EndsWith(const std::wstring& text, const std::wstring& suffix) {
    return text.size() >= suffix.size() &&
           text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

std::wstring FirstRelativeName(const std::wstring& dn) {
    return dn.substr(0, dn.find(L','));
}

// Counts itself among the directory's live objects.
class Counted {
public:
    explicit Counted(FakeDirectory& directory) : directory_(directory) { ++directory_.live; }
    ~Counted() { --directory_.live; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

protected:
    FakeDirectory& directory_;
};

// An IADs on a committed entry (by key) or on a created one (by number).
class FakeObject final : public os::DirectoryObject, Counted {
public:
    FakeObject(FakeDirectory& directory, std::wstring key, std::optional<int> pendingNumber)
        : Counted(directory), key_(std::move(key)), pendingNumber_(pendingNumber) {}

    std::int32_t Put(const std::wstring& name, const std::wstring& value) override {
        std::int32_t result = 0;
        if (directory_.Faulted("Put " + Ascii(name) + "=" + Ascii(value), result)) {
            return result;
        }
        FakeDirectory::Entry* entry = Target();
        if (entry == nullptr) {
            return directory_.Fail(os::kDirectoryNoSuchObject, 0);
        }
        entry->attributes[Lower(name)] = value;
        return os::kDirectoryOk;
    }
    std::int32_t Get(const std::wstring& name, std::wstring& value) override {
        std::int32_t result = 0;
        if (directory_.Faulted("Get " + Ascii(name), result)) {
            return result;
        }
        FakeDirectory::Entry* entry = Target();
        if (entry == nullptr) {
            return directory_.Fail(os::kDirectoryNoSuchObject, 0);
        }
        const auto found = entry->attributes.find(Lower(name));
        if (found == entry->attributes.end()) {
            return kPropertyNotFound;
        }
        value = found->second;
        return os::kDirectoryOk;
    }
    std::int32_t SetInfo() override {
        FakeDirectory::Entry* entry = Target();
        std::int32_t result = 0;
        if (directory_.Faulted("SetInfo " + Ascii(entry != nullptr ? entry->dn : key_), result)) {
            return result;
        }
        if (!pendingNumber_) {
            return entry != nullptr ? os::kDirectoryOk
                                    : directory_.Fail(os::kDirectoryNoSuchObject, 0);
        }
        const auto created = directory_.pending.find(*pendingNumber_);
        if (directory_.entries.count(key_) != 0) {
            return directory_.Fail(os::kDirectoryObjectExists, 0);
        }
        directory_.entries[key_] = created->second;
        directory_.pending.erase(created);
        pendingNumber_.reset();
        return os::kDirectoryOk;
    }
    std::int32_t GetADsPath(std::wstring& path) override {
        FakeDirectory::Entry* entry = Target();
        if (entry == nullptr) {
            return directory_.Fail(os::kDirectoryNoSuchObject, 0);
        }
        path = L"LDAP://" + entry->dn;
        return os::kDirectoryOk;
    }
    std::int32_t GetName(std::wstring& name) override {
        FakeDirectory::Entry* entry = Target();
        if (entry == nullptr) {
            return directory_.Fail(os::kDirectoryNoSuchObject, 0);
        }
        name = FirstRelativeName(entry->dn);
        return os::kDirectoryOk;
    }

private:
    FakeDirectory::Entry* Target() {
        if (pendingNumber_) {
            const auto created = directory_.pending.find(*pendingNumber_);
            return created != directory_.pending.end() ? &created->second : nullptr;
        }
        const auto found = directory_.entries.find(key_);
        return found != directory_.entries.end() ? &found->second : nullptr;
    }

    std::wstring key_;
    std::optional<int> pendingNumber_;
};

class FakeDispatch final : public os::DirectoryDispatch, Counted {
public:
    FakeDispatch(FakeDirectory& directory, std::wstring key, std::optional<int> pendingNumber)
        : Counted(directory), key_(std::move(key)), pendingNumber_(pendingNumber) {}

    std::int32_t QueryObject(std::unique_ptr<os::DirectoryObject>& object) override {
        std::int32_t result = 0;
        if (directory_.Faulted("QueryObject " + Ascii(key_), result)) {
            return result;
        }
        object = std::make_unique<FakeObject>(directory_, key_, pendingNumber_);
        return os::kDirectoryOk;
    }

private:
    std::wstring key_;
    std::optional<int> pendingNumber_;
};

// Walks a list of keys one element at a time.
class FakeEnumeration final : public os::DirectoryEnumeration, Counted {
public:
    FakeEnumeration(FakeDirectory& directory, std::vector<std::wstring> keys)
        : Counted(directory), keys_(std::move(keys)) {}

    std::int32_t Next(std::unique_ptr<os::DirectoryDispatch>& element,
                      std::uint32_t& fetched) override {
        element.reset();
        fetched = 0;
        std::int32_t result = 0;
        if (directory_.Faulted("Next " + std::to_string(position_), result)) {
            return result;
        }
        if (position_ >= keys_.size()) {
            return os::kDirectoryFalse;
        }
        element = std::make_unique<FakeDispatch>(directory_, keys_[position_++], std::nullopt);
        fetched = 1;
        return os::kDirectoryOk;
    }

private:
    std::vector<std::wstring> keys_;
    std::size_t position_ = 0;
};

class FakeUnknown final : public os::DirectoryUnknown, Counted {
public:
    FakeUnknown(FakeDirectory& directory, std::vector<std::wstring> keys)
        : Counted(directory), keys_(std::move(keys)) {}

    std::int32_t QueryEnumeration(std::unique_ptr<os::DirectoryEnumeration>& enumeration) override {
        std::int32_t result = 0;
        if (directory_.Faulted("QueryEnumeration", result)) {
            return result;
        }
        enumeration = std::make_unique<FakeEnumeration>(directory_, keys_);
        return os::kDirectoryOk;
    }

private:
    std::vector<std::wstring> keys_;
};

class FakeMembers final : public os::DirectoryMembers, Counted {
public:
    FakeMembers(FakeDirectory& directory, std::vector<std::wstring> keys)
        : Counted(directory), keys_(std::move(keys)) {}

    std::int32_t NewEnum(std::unique_ptr<os::DirectoryUnknown>& unknown) override {
        std::int32_t result = 0;
        if (directory_.Faulted("NewEnum", result)) {
            return result;
        }
        unknown = std::make_unique<FakeUnknown>(directory_, keys_);
        return os::kDirectoryOk;
    }

private:
    std::vector<std::wstring> keys_;
};

class FakeContainer final : public os::DirectoryContainer, Counted {
public:
    FakeContainer(FakeDirectory& directory, std::wstring key)
        : Counted(directory), key_(std::move(key)) {}

    std::int32_t Create(const std::wstring& objectClass, const std::wstring& relativeName,
                        std::unique_ptr<os::DirectoryDispatch>& created) override {
        std::int32_t result = 0;
        if (directory_.Faulted("Create " + Ascii(objectClass) + " " + Ascii(relativeName),
                               result)) {
            return result;
        }
        FakeDirectory::Entry entry;
        entry.dn = relativeName + L"," + directory_.entries[key_].dn;
        entry.objectClass = Lower(objectClass);
        const int number = directory_.nextPending++;
        directory_.pending[number] = entry;
        created = std::make_unique<FakeDispatch>(directory_, FakeDirectory::Key(entry.dn), number);
        return os::kDirectoryOk;
    }
    std::int32_t Delete(const std::wstring& objectClass,
                        const std::wstring& relativeName) override {
        std::int32_t result = 0;
        if (directory_.Faulted("Delete " + Ascii(objectClass) + " " + Ascii(relativeName),
                               result)) {
            return result;
        }
        const std::wstring key = FakeDirectory::Key(relativeName) + L"," + key_;
        const auto found = directory_.entries.find(key);
        if (found == directory_.entries.end() || found->second.objectClass != Lower(objectClass)) {
            return directory_.Fail(os::kDirectoryNoSuchObject, 0);
        }
        directory_.entries.erase(found);
        for (auto& entry : directory_.entries) {
            std::vector<std::wstring>& members = entry.second.members;
            members.erase(std::remove(members.begin(), members.end(), key), members.end());
        }
        return os::kDirectoryOk;
    }
    std::int32_t PutFilter(const std::vector<std::wstring>& classes) override {
        std::string line = "PutFilter";
        for (const std::wstring& name : classes) {
            line += " " + Ascii(name);
        }
        std::int32_t result = 0;
        if (directory_.Faulted(line, result)) {
            return result;
        }
        filter_.clear();
        for (const std::wstring& name : classes) {
            filter_.push_back(Lower(name));
        }
        return os::kDirectoryOk;
    }
    std::int32_t BuildEnumerator(std::unique_ptr<os::DirectoryEnumeration>& enumeration) override {
        std::int32_t result = 0;
        if (directory_.Faulted("BuildEnumerator", result)) {
            return result;
        }
        std::vector<std::wstring> children;
        for (const auto& entry : directory_.entries) {
            const bool wanted =
                filter_.empty() || std::find(filter_.begin(), filter_.end(),
                                             entry.second.objectClass) != filter_.end();
            if (ParentKey(entry.first) == key_ && wanted) {
                children.push_back(entry.first);
            }
        }
        enumeration = std::make_unique<FakeEnumeration>(directory_, children);
        return os::kDirectoryOk;
    }

private:
    std::wstring key_;
    std::vector<std::wstring> filter_;
};

class FakeUser final : public os::DirectoryUser, Counted {
public:
    FakeUser(FakeDirectory& directory, std::wstring key)
        : Counted(directory), key_(std::move(key)) {}

    std::int32_t SetPassword(const std::wstring& password) override {
        std::int32_t result = 0;
        if (directory_.Faulted("SetPassword " + Ascii(Entry().dn) + " " + Ascii(password),
                               result)) {
            return result;
        }
        Entry().password = password;
        return os::kDirectoryOk;
    }
    std::int32_t PutAccountDisabled(bool disabled) override {
        std::int32_t result = 0;
        if (directory_.Faulted(
                "PutAccountDisabled " + Ascii(Entry().dn) + " " + std::to_string(disabled ? 1 : 0),
                result)) {
            return result;
        }
        disabled_ = disabled;
        return os::kDirectoryOk;
    }
    std::int32_t SetInfo() override {
        std::int32_t result = 0;
        if (directory_.Faulted("UserSetInfo " + Ascii(Entry().dn), result)) {
            return result;
        }
        if (disabled_) {
            Entry().disabled = *disabled_;
        }
        return os::kDirectoryOk;
    }
    std::int32_t Groups(std::unique_ptr<os::DirectoryMembers>& groups) override {
        std::int32_t result = 0;
        if (directory_.Faulted("Groups " + Ascii(Entry().dn), result)) {
            return result;
        }
        groups = std::make_unique<FakeMembers>(directory_, directory_.GroupsOf(key_));
        return os::kDirectoryOk;
    }

private:
    FakeDirectory::Entry& Entry() { return directory_.entries[key_]; }

    std::wstring key_;
    std::optional<bool> disabled_;
};

class FakeGroup final : public os::DirectoryGroup, Counted {
public:
    FakeGroup(FakeDirectory& directory, std::wstring key)
        : Counted(directory), key_(std::move(key)) {}

    std::int32_t Add(const std::wstring& memberPath) override {
        std::int32_t result = 0;
        if (directory_.Faulted("Add " + Ascii(memberPath), result)) {
            return result;
        }
        const std::wstring member = FakeDirectory::Key(memberPath);
        if (directory_.entries.count(member) == 0) {
            return directory_.Fail(os::kDirectoryNoSuchObject, 0);
        }
        std::vector<std::wstring>& members = directory_.entries[key_].members;
        if (std::find(members.begin(), members.end(), member) != members.end()) {
            return directory_.Fail(kMemberInAliasResult, kMemberInAlias);
        }
        members.push_back(member);
        return os::kDirectoryOk;
    }
    std::int32_t Remove(const std::wstring& memberPath) override {
        std::int32_t result = 0;
        if (directory_.Faulted("Remove " + Ascii(memberPath), result)) {
            return result;
        }
        std::vector<std::wstring>& members = directory_.entries[key_].members;
        const auto found =
            std::find(members.begin(), members.end(), FakeDirectory::Key(memberPath));
        if (found == members.end()) {
            return directory_.Fail(kMemberNotInAliasResult, kMemberNotInAlias);
        }
        members.erase(found);
        return os::kDirectoryOk;
    }
    std::int32_t Members(std::unique_ptr<os::DirectoryMembers>& members) override {
        std::int32_t result = 0;
        if (directory_.Faulted("Members " + Ascii(directory_.entries[key_].dn), result)) {
            return result;
        }
        members = std::make_unique<FakeMembers>(directory_, directory_.entries[key_].members);
        return os::kDirectoryOk;
    }

private:
    std::wstring key_;
};

// The rows of one search, in pages: at each page's end the directory says
// "no more rows" once, with the extended error 234.
class FakeSearchRows final : public os::DirectorySearchRows, Counted {
public:
    FakeSearchRows(FakeDirectory& directory, std::vector<std::wstring> keys)
        : Counted(directory), keys_(std::move(keys)) {}
    ~FakeSearchRows() override { directory_.calls.push_back("CloseSearchHandle"); }
    FakeSearchRows(const FakeSearchRows&) = delete;
    FakeSearchRows& operator=(const FakeSearchRows&) = delete;

    std::int32_t GetNextRow() override {
        std::int32_t result = 0;
        if (directory_.Faulted("GetNextRow " + std::to_string(next_), result)) {
            return result;
        }
        if (next_ >= keys_.size()) {
            directory_.extendedError = 0;
            return os::kDirectoryNoMoreRows;
        }
        const std::size_t page = directory_.rowsPerPage;
        if (page != 0 && next_ != 0 && next_ % page == 0 && !pageEndGiven_) {
            pageEndGiven_ = true;
            directory_.extendedError = kMoreData;
            return os::kDirectoryNoMoreRows;
        }
        pageEndGiven_ = false;
        current_ = next_++;
        return os::kDirectoryOk;
    }
    std::int32_t GetColumn(const std::wstring& column, std::vector<std::wstring>& values) override {
        values.clear();
        const FakeDirectory::Entry& entry = directory_.entries[keys_[current_]];
        const std::wstring name = Lower(column);
        if (name == L"adspath") {
            values.push_back(L"LDAP://" + entry.dn);
        } else if (name == L"memberof") {
            for (const std::wstring& group : directory_.GroupsOf(keys_[current_])) {
                values.push_back(directory_.entries[group].dn);
            }
        } else if (entry.attributes.count(name) != 0) {
            values.push_back(entry.attributes.at(name));
        }
        return values.empty() ? kColumnNotSet : os::kDirectoryOk;
    }

private:
    std::vector<std::wstring> keys_;
    std::size_t next_ = 0;
    std::size_t current_ = 0;
    bool pageEndGiven_ = false;
};

class FakeSearch final : public os::DirectorySearch, Counted {
public:
    FakeSearch(FakeDirectory& directory, std::wstring key)
        : Counted(directory), key_(std::move(key)) {}

    std::int32_t SetSearchPreference(
        const std::vector<os::SearchPreference>& preferences) override {
        std::string line = "SetSearchPreference";
        for (const os::SearchPreference& preference : preferences) {
            line += " " + std::to_string(preference.name) + ":" + std::to_string(preference.type) +
                    "=" + std::to_string(preference.value);
            if (preference.name == os::kSearchPrefSearchScope) {
                scope_ = preference.value;
            }
        }
        std::int32_t result = 0;
        return directory_.Faulted(line, result) ? result : os::kDirectoryOk;
    }
    std::int32_t ExecuteSearch(const std::wstring& filter, const std::vector<std::wstring>& columns,
                               std::unique_ptr<os::DirectorySearchRows>& rows) override {
        std::string line = "ExecuteSearch " + Ascii(filter);
        for (const std::wstring& column : columns) {
            line += " " + Ascii(column);
        }
        std::int32_t result = 0;
        if (directory_.Faulted(line, result)) {
            return result;
        }
        std::wstring wanted;
        if (filter == kUserFilter) {
            wanted = L"user";
        } else if (filter == kGroupFilter) {
            wanted = L"group";
        } else {
            ADD_FAILURE() << "the directory fake knows no filter " << line;
            return os::kDirectoryFailed;
        }
        std::vector<std::wstring> found;
        for (const auto& entry : directory_.entries) {
            const bool inScope = scope_ == os::kScopeOneLevel ? ParentKey(entry.first) == key_
                                                              : EndsWith(entry.first, L"," + key_);
            if (inScope && entry.second.objectClass == wanted) {
                found.push_back(entry.first);
            }
        }
        rows = std::make_unique<FakeSearchRows>(directory_, found);
        return os::kDirectoryOk;
    }

private:
    std::wstring key_;
    std::int32_t scope_ = os::kScopeSubtree;
};

bool IsContainerClass(const std::wstring& objectClass) {
    return objectClass != L"user" && objectClass != L"group";
}

}  // namespace

FakeDirectory::FakeDirectory() = default;

FakeDirectory::~FakeDirectory() {
    EXPECT_EQ(live, 0) << "directory objects outlived the directory";
}

std::wstring FakeDirectory::Key(const std::wstring& dnOrPath) {
    std::wstring text = dnOrPath;
    if (Lower(text.substr(0, 7)) == L"ldap://") {
        text.erase(0, 7);
    }
    std::wstring key;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == L' ' && !key.empty() && key.back() == L',') {
            continue;
        }
        key += text[i];
    }
    return Lower(key);
}

FakeDirectory::Entry& FakeDirectory::AddEntry(const std::wstring& dn,
                                              const std::wstring& objectClass) {
    Entry& entry = entries[Key(dn)];
    entry.dn = dn;
    entry.objectClass = Lower(objectClass);
    return entry;
}

void FakeDirectory::AddMember(const std::wstring& groupDn, const std::wstring& memberDn) {
    entries[Key(groupDn)].members.push_back(Key(memberDn));
}

FakeDirectory::Entry* FakeDirectory::Find(const std::wstring& dnOrPath) {
    const auto found = entries.find(Key(dnOrPath));
    return found != entries.end() ? &found->second : nullptr;
}

bool FakeDirectory::IsMember(const std::wstring& groupDn, const std::wstring& memberDn) {
    const Entry* group = Find(groupDn);
    return group != nullptr && std::find(group->members.begin(), group->members.end(),
                                         Key(memberDn)) != group->members.end();
}

std::vector<std::wstring> FakeDirectory::GroupsOf(const std::wstring& memberKey) {
    std::vector<std::wstring> groups;
    for (const auto& entry : entries) {
        const std::vector<std::wstring>& members = entry.second.members;
        if (std::find(members.begin(), members.end(), memberKey) != members.end()) {
            groups.push_back(entry.first);
        }
    }
    return groups;
}

std::vector<std::string> FakeDirectory::CallsStartingWith(const std::string& prefix) const {
    std::vector<std::string> matching;
    for (const std::string& call : calls) {
        if (call.compare(0, prefix.size(), prefix) == 0) {
            matching.push_back(call);
        }
    }
    return matching;
}

bool FakeDirectory::Faulted(const std::string& line, std::int32_t& result) {
    calls.push_back(line);
    const auto fault = failures.find(line);
    if (fault == failures.end()) {
        return false;
    }
    result = Fail(fault->second.result, fault->second.extendedError);
    return true;
}

std::int32_t FakeDirectory::Fail(std::int32_t result, std::uint32_t extended) {
    extendedError = extended;
    return result;
}

std::int32_t FakeDirectory::FailBind(std::int32_t result) {
    lastError = failedBindLastError;
    return result;
}

std::int32_t FakeDirectory::LastExtendedError(std::uint32_t& error) {
    error = extendedError;
    return os::kDirectoryOk;
}

namespace {

// Binds an entry for an interface when the entry is of a class that offers
// it.
template <class Made, class Result, class Offers>
std::int32_t BindEntry(FakeDirectory& directory, const char* operation, const std::wstring& path,
                       Offers offers, std::unique_ptr<Result>& out) {
    out.reset();
    directory.boundPaths.push_back(path);
    std::int32_t result = 0;
    if (directory.Faulted(std::string(operation) + " " + Ascii(path), result)) {
        return os::DirectorySucceeded(result) ? result : directory.FailBind(result);
    }
    const FakeDirectory::Entry* entry = directory.Find(path);
    if (entry == nullptr) {
        return directory.FailBind(os::kDirectoryNoSuchObject);
    }
    if (!offers(entry->objectClass)) {
        return directory.FailBind(os::kDirectoryNoInterface);
    }
    out = std::make_unique<Made>(directory, FakeDirectory::Key(path));
    return os::kDirectoryOk;
}

// IADs made from a path: a committed object by key.
class BoundObject final : public os::DirectoryObject {
public:
    BoundObject(FakeDirectory& directory, std::wstring key)
        : object_(directory, std::move(key), std::nullopt) {}
    std::int32_t Put(const std::wstring& name, const std::wstring& value) override {
        return object_.Put(name, value);
    }
    std::int32_t Get(const std::wstring& name, std::wstring& value) override {
        return object_.Get(name, value);
    }
    std::int32_t SetInfo() override { return object_.SetInfo(); }
    std::int32_t GetADsPath(std::wstring& path) override { return object_.GetADsPath(path); }
    std::int32_t GetName(std::wstring& name) override { return object_.GetName(name); }

private:
    FakeObject object_;
};

}  // namespace

std::int32_t FakeDirectory::BindContainer(const std::wstring& path,
                                          std::unique_ptr<os::DirectoryContainer>& container) {
    return BindEntry<FakeContainer>(*this, "BindContainer", path, IsContainerClass, container);
}

std::int32_t FakeDirectory::BindObject(const std::wstring& path,
                                       std::unique_ptr<os::DirectoryObject>& object) {
    return BindEntry<BoundObject>(
        *this, "BindObject", path, [](const std::wstring&) { return true; }, object);
}

std::int32_t FakeDirectory::BindUser(const std::wstring& path,
                                     std::unique_ptr<os::DirectoryUser>& user) {
    return BindEntry<FakeUser>(
        *this, "BindUser", path, [](const std::wstring& kind) { return kind == L"user"; }, user);
}

std::int32_t FakeDirectory::BindGroup(const std::wstring& path,
                                      std::unique_ptr<os::DirectoryGroup>& group) {
    return BindEntry<FakeGroup>(
        *this, "BindGroup", path, [](const std::wstring& kind) { return kind == L"group"; }, group);
}

std::int32_t FakeDirectory::BindSearch(const std::wstring& path,
                                       std::unique_ptr<os::DirectorySearch>& search) {
    return BindEntry<FakeSearch>(*this, "BindSearch", path, IsContainerClass, search);
}

}  // namespace vagent::test
