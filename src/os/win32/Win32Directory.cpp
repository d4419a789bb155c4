#include "os/Directory.h"
#include "os/win32/WindowsHeaders.h"

#include <objbase.h>
#include <oleauto.h>

#include <activeds.h>

#include <new>
#include <utility>

namespace vagent::os {
namespace {

template <class Left, class Right>
constexpr bool SameNumber(Left left, Right right) {
    return static_cast<long long>(left) == static_cast<long long>(right);
}
static_assert(SameNumber(kSearchPrefPageSize, ADS_SEARCHPREF_PAGESIZE), "page size preference");
static_assert(SameNumber(kSearchPrefSearchScope, ADS_SEARCHPREF_SEARCH_SCOPE), "scope preference");
static_assert(SameNumber(kSearchTypeInteger, ADSTYPE_INTEGER), "integer value type");
static_assert(SameNumber(kScopeSubtree, ADS_SCOPE_SUBTREE), "subtree scope");
static_assert(SameNumber(kScopeOneLevel, ADS_SCOPE_ONELEVEL), "one-level scope");
static_assert(kDirectoryNoMoreRows == S_ADS_NOMORE_ROWS, "end of rows");

// One counted reference to a COM interface, released when the holder ends.
template <class Interface>
class Held {
public:
    Held() = default;
    explicit Held(Interface* pointer) : pointer_(pointer) {}
    ~Held() { Reset(); }
    Held(Held&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    Held& operator=(Held&&) = delete;
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

    Interface* Get() const { return pointer_; }
    Interface* operator->() const { return pointer_; }
    // Where a call writes a new reference; any previous one is released.
    Interface** Receive() {
        Reset();
        return &pointer_;
    }
    void** ReceiveVoid() { return reinterpret_cast<void**>(Receive()); }

private:
    void Reset() {
        if (pointer_ != nullptr) {
            pointer_->Release();
            pointer_ = nullptr;
        }
    }
    Interface* pointer_ = nullptr;
};

// An automation string made from a wide text, freed when it ends.
class Bstr {
public:
    explicit Bstr(const std::wstring& text) : value_(SysAllocString(text.c_str())) {}
    Bstr() = default;
    ~Bstr() { SysFreeString(value_); }
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;

    BSTR Get() const { return value_; }
    BSTR* Receive() {
        SysFreeString(value_);
        value_ = nullptr;
        return &value_;
    }
    std::wstring Text() const { return value_ != nullptr ? std::wstring(value_) : std::wstring(); }

private:
    BSTR value_ = nullptr;
};

// A variant cleared when it ends.
class Variant {
public:
    Variant() { VariantInit(&value_); }
    ~Variant() { VariantClear(&value_); }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;

    VARIANT* Get() { return &value_; }
    void Clear() { VariantClear(&value_); }

private:
    VARIANT value_;
};

template <class Result, class Wrapper, class Interface>
void HandOut(Held<Interface>&& held, std::unique_ptr<Result>& out) {
    out = std::make_unique<Wrapper>(std::move(held));
}

// A call that reports success without handing out its interface has failed:
// the caller must not go on to use an object that is not there.
template <class Interface>
HRESULT HandedOutOrFailed(HRESULT result, const Held<Interface>& held) {
    return SUCCEEDED(result) && held.Get() == nullptr ? E_POINTER : result;
}

class Win32Object final : public DirectoryObject {
public:
    explicit Win32Object(Held<IADs>&& object) : object_(std::move(object)) {}

    std::int32_t Put(const std::wstring& name, const std::wstring& value) override {
        Bstr attribute(name);
        Variant variant;
        V_VT(variant.Get()) = VT_BSTR;
        V_BSTR(variant.Get()) = SysAllocString(value.c_str());
        return object_->Put(attribute.Get(), *variant.Get());
    }
    std::int32_t Get(const std::wstring& name, std::wstring& value) override {
        Bstr attribute(name);
        Variant variant;
        const HRESULT result = object_->Get(attribute.Get(), variant.Get());
        if (FAILED(result)) {
            return result;
        }
        if (V_VT(variant.Get()) != VT_BSTR) {
            return DISP_E_TYPEMISMATCH;
        }
        value = V_BSTR(variant.Get()) != nullptr ? V_BSTR(variant.Get()) : L"";
        return result;
    }
    std::int32_t SetInfo() override { return object_->SetInfo(); }
    std::int32_t GetADsPath(std::wstring& path) override {
        Bstr text;
        const HRESULT result = object_->get_ADsPath(text.Receive());
        if (SUCCEEDED(result)) {
            path = text.Text();
        }
        return result;
    }
    std::int32_t GetName(std::wstring& name) override {
        Bstr text;
        const HRESULT result = object_->get_Name(text.Receive());
        if (SUCCEEDED(result)) {
            name = text.Text();
        }
        return result;
    }

private:
    Held<IADs> object_;
};

class Win32Dispatch final : public DirectoryDispatch {
public:
    explicit Win32Dispatch(Held<IDispatch>&& dispatch) : dispatch_(std::move(dispatch)) {}

    std::int32_t QueryObject(std::unique_ptr<DirectoryObject>& object) override {
        Held<IADs> queried;
        const HRESULT result =
            HandedOutOrFailed(dispatch_->QueryInterface(IID_IADs, queried.ReceiveVoid()), queried);
        if (SUCCEEDED(result)) {
            HandOut<DirectoryObject, Win32Object>(std::move(queried), object);
        }
        return result;
    }

private:
    Held<IDispatch> dispatch_;
};

// The object a fetched variant holds, as a dispatch of its own reference.
void DispatchOf(Variant& element, std::unique_ptr<DirectoryDispatch>& out) {
    VARIANT* value = element.Get();
    if (V_VT(value) == VT_DISPATCH && V_DISPATCH(value) != nullptr) {
        V_DISPATCH(value)->AddRef();
        HandOut<DirectoryDispatch, Win32Dispatch>(Held<IDispatch>(V_DISPATCH(value)), out);
    }
}

// A member enumeration, walked with IEnumVARIANT::Next.
class Win32MemberEnumeration final : public DirectoryEnumeration {
public:
    explicit Win32MemberEnumeration(Held<IEnumVARIANT>&& enumeration)
        : enumeration_(std::move(enumeration)) {}

    std::int32_t Next(std::unique_ptr<DirectoryDispatch>& element,
                      std::uint32_t& fetched) override {
        element.reset();
        Variant value;
        ULONG count = 0;
        const HRESULT result = enumeration_->Next(1, value.Get(), &count);
        fetched = count;
        if (result == S_OK && count == 1) {
            DispatchOf(value, element);
        }
        return result;
    }

private:
    Held<IEnumVARIANT> enumeration_;
};

// A container enumeration, walked with ADsEnumerateNext and freed with
// ADsFreeEnumerator.
class Win32ContainerEnumeration final : public DirectoryEnumeration {
public:
    explicit Win32ContainerEnumeration(IEnumVARIANT* enumeration) : enumeration_(enumeration) {}
    ~Win32ContainerEnumeration() override { ADsFreeEnumerator(enumeration_); }
    Win32ContainerEnumeration(const Win32ContainerEnumeration&) = delete;
    Win32ContainerEnumeration& operator=(const Win32ContainerEnumeration&) = delete;

    std::int32_t Next(std::unique_ptr<DirectoryDispatch>& element,
                      std::uint32_t& fetched) override {
        element.reset();
        Variant value;
        ULONG count = 0;
        const HRESULT result = ADsEnumerateNext(enumeration_, 1, value.Get(), &count);
        fetched = count;
        if (result == S_OK && count == 1) {
            DispatchOf(value, element);
        }
        return result;
    }

private:
    IEnumVARIANT* enumeration_;
};

class Win32Unknown final : public DirectoryUnknown {
public:
    explicit Win32Unknown(Held<IUnknown>&& unknown) : unknown_(std::move(unknown)) {}

    std::int32_t QueryEnumeration(std::unique_ptr<DirectoryEnumeration>& enumeration) override {
        Held<IEnumVARIANT> queried;
        const HRESULT result = HandedOutOrFailed(
            unknown_->QueryInterface(IID_IEnumVARIANT, queried.ReceiveVoid()), queried);
        if (SUCCEEDED(result)) {
            HandOut<DirectoryEnumeration, Win32MemberEnumeration>(std::move(queried), enumeration);
        }
        return result;
    }

private:
    Held<IUnknown> unknown_;
};

class Win32Members final : public DirectoryMembers {
public:
    explicit Win32Members(Held<IADsMembers>&& members) : members_(std::move(members)) {}

    std::int32_t NewEnum(std::unique_ptr<DirectoryUnknown>& unknown) override {
        Held<IUnknown> received;
        const HRESULT result =
            HandedOutOrFailed(members_->get__NewEnum(received.Receive()), received);
        if (SUCCEEDED(result)) {
            HandOut<DirectoryUnknown, Win32Unknown>(std::move(received), unknown);
        }
        return result;
    }

private:
    Held<IADsMembers> members_;
};

// A string array variant for a container's filter.
HRESULT BuildClassArray(const std::vector<std::wstring>& classes, Variant& array) {
    std::vector<std::wstring> copies = classes;
    std::vector<LPWSTR> pointers;
    for (std::wstring& text : copies) {
        pointers.push_back(&text[0]);
    }
    return ADsBuildVarArrayStr(pointers.data(), static_cast<DWORD>(pointers.size()), array.Get());
}

class Win32Container final : public DirectoryContainer {
public:
    explicit Win32Container(Held<IADsContainer>&& container) : container_(std::move(container)) {}

    std::int32_t Create(const std::wstring& objectClass, const std::wstring& relativeName,
                        std::unique_ptr<DirectoryDispatch>& created) override {
        Bstr kind(objectClass);
        Bstr name(relativeName);
        Held<IDispatch> dispatch;
        const HRESULT result = container_->Create(kind.Get(), name.Get(), dispatch.Receive());
        if (SUCCEEDED(result) && dispatch.Get() != nullptr) {
            HandOut<DirectoryDispatch, Win32Dispatch>(std::move(dispatch), created);
        }
        return result;
    }
    std::int32_t Delete(const std::wstring& objectClass,
                        const std::wstring& relativeName) override {
        Bstr kind(objectClass);
        Bstr name(relativeName);
        return container_->Delete(kind.Get(), name.Get());
    }
    std::int32_t PutFilter(const std::vector<std::wstring>& classes) override {
        Variant array;
        const HRESULT built = BuildClassArray(classes, array);
        if (FAILED(built)) {
            return built;
        }
        return container_->put_Filter(*array.Get());
    }
    std::int32_t BuildEnumerator(std::unique_ptr<DirectoryEnumeration>& enumeration) override {
        IEnumVARIANT* built = nullptr;
        const HRESULT result = ADsBuildEnumerator(container_.Get(), &built);
        if (FAILED(result) || built == nullptr) {
            return result;
        }
        auto* made = new (std::nothrow) Win32ContainerEnumeration(built);
        if (made == nullptr) {
            ADsFreeEnumerator(built);
            return E_OUTOFMEMORY;
        }
        enumeration.reset(made);
        return result;
    }

private:
    Held<IADsContainer> container_;
};

class Win32User final : public DirectoryUser {
public:
    explicit Win32User(Held<IADsUser>&& user) : user_(std::move(user)) {}

    std::int32_t SetPassword(const std::wstring& password) override {
        Bstr text(password);
        return user_->SetPassword(text.Get());
    }
    std::int32_t PutAccountDisabled(bool disabled) override {
        return user_->put_AccountDisabled(disabled ? VARIANT_TRUE : VARIANT_FALSE);
    }
    std::int32_t SetInfo() override { return user_->SetInfo(); }
    std::int32_t Groups(std::unique_ptr<DirectoryMembers>& groups) override {
        Held<IADsMembers> members;
        const HRESULT result = HandedOutOrFailed(user_->Groups(members.Receive()), members);
        if (SUCCEEDED(result)) {
            HandOut<DirectoryMembers, Win32Members>(std::move(members), groups);
        }
        return result;
    }

private:
    Held<IADsUser> user_;
};

class Win32Group final : public DirectoryGroup {
public:
    explicit Win32Group(Held<IADsGroup>&& group) : group_(std::move(group)) {}

    std::int32_t Add(const std::wstring& memberPath) override {
        Bstr path(memberPath);
        return group_->Add(path.Get());
    }
    std::int32_t Remove(const std::wstring& memberPath) override {
        Bstr path(memberPath);
        return group_->Remove(path.Get());
    }
    std::int32_t Members(std::unique_ptr<DirectoryMembers>& members) override {
        Held<IADsMembers> collection;
        const HRESULT result = HandedOutOrFailed(group_->Members(collection.Receive()), collection);
        if (SUCCEEDED(result)) {
            HandOut<DirectoryMembers, Win32Members>(std::move(collection), members);
        }
        return result;
    }

private:
    Held<IADsGroup> group_;
};

bool IsStringType(ADSTYPE type) {
    return type == ADSTYPE_DN_STRING || type == ADSTYPE_CASE_EXACT_STRING ||
           type == ADSTYPE_CASE_IGNORE_STRING || type == ADSTYPE_PRINTABLE_STRING ||
           type == ADSTYPE_NUMERIC_STRING;
}

// The running search keeps its own reference to the search interface, so the
// handle is closed while the interface is still there.
class Win32SearchRows final : public DirectorySearchRows {
public:
    Win32SearchRows(IDirectorySearch* search, ADS_SEARCH_HANDLE handle)
        : search_(search), handle_(handle) {
        search_->AddRef();
    }
    ~Win32SearchRows() override {
        search_->CloseSearchHandle(handle_);
        search_->Release();
    }
    Win32SearchRows(const Win32SearchRows&) = delete;
    Win32SearchRows& operator=(const Win32SearchRows&) = delete;

    std::int32_t GetNextRow() override { return search_->GetNextRow(handle_); }
    std::int32_t GetColumn(const std::wstring& column, std::vector<std::wstring>& values) override {
        std::wstring name = column;
        ADS_SEARCH_COLUMN found = {};
        const HRESULT result = search_->GetColumn(handle_, &name[0], &found);
        if (FAILED(result)) {
            return result;
        }
        values.clear();
        for (DWORD i = 0; i < found.dwNumValues && found.pADsValues != nullptr; ++i) {
            const ADSVALUE& value = found.pADsValues[i];
            const LPWSTR text = IsStringType(value.dwType) ? value.CaseIgnoreString : nullptr;
            values.push_back(text != nullptr ? std::wstring(text) : std::wstring());
        }
        search_->FreeColumn(&found);
        return result;
    }

private:
    IDirectorySearch* search_;
    ADS_SEARCH_HANDLE handle_;
};

class Win32Search final : public DirectorySearch {
public:
    explicit Win32Search(Held<IDirectorySearch>&& search) : search_(std::move(search)) {}

    std::int32_t SetSearchPreference(const std::vector<SearchPreference>& preferences) override {
        std::vector<ADS_SEARCHPREF_INFO> infos(preferences.size());
        for (std::size_t i = 0; i < preferences.size(); ++i) {
            infos[i].dwSearchPref = static_cast<ADS_SEARCHPREF>(preferences[i].name);
            infos[i].vValue.dwType = static_cast<ADSTYPE>(preferences[i].type);
            infos[i].vValue.Integer = static_cast<ADS_INTEGER>(preferences[i].value);
        }
        return search_->SetSearchPreference(infos.data(), static_cast<DWORD>(infos.size()));
    }
    std::int32_t ExecuteSearch(const std::wstring& filter, const std::vector<std::wstring>& columns,
                               std::unique_ptr<DirectorySearchRows>& rows) override {
        std::wstring filterText = filter;
        std::vector<std::wstring> names = columns;
        std::vector<LPWSTR> pointers;
        for (std::wstring& name : names) {
            pointers.push_back(&name[0]);
        }
        ADS_SEARCH_HANDLE handle = nullptr;
        const HRESULT result = search_->ExecuteSearch(&filterText[0], pointers.data(),
                                                      static_cast<DWORD>(pointers.size()), &handle);
        if (FAILED(result)) {
            return result;
        }
        auto* made = new (std::nothrow) Win32SearchRows(search_.Get(), handle);
        if (made == nullptr) {
            search_->CloseSearchHandle(handle);
            return E_OUTOFMEMORY;
        }
        rows.reset(made);
        return result;
    }

private:
    Held<IDirectorySearch> search_;
};

template <class Result, class Wrapper, class Interface>
std::int32_t Bind(const std::wstring& path, REFIID interfaceId, std::unique_ptr<Result>& out) {
    out.reset();
    Held<Interface> bound;
    const HRESULT result = ADsGetObject(path.c_str(), interfaceId, bound.ReceiveVoid());
    if (SUCCEEDED(result) && bound.Get() != nullptr) {
        HandOut<Result, Wrapper>(std::move(bound), out);
    }
    return result;
}

class Win32Directory final : public Directory {
public:
    std::int32_t BindContainer(const std::wstring& path,
                               std::unique_ptr<DirectoryContainer>& container) override {
        return Bind<DirectoryContainer, Win32Container, IADsContainer>(path, IID_IADsContainer,
                                                                       container);
    }
    std::int32_t BindObject(const std::wstring& path,
                            std::unique_ptr<DirectoryObject>& object) override {
        return Bind<DirectoryObject, Win32Object, IADs>(path, IID_IADs, object);
    }
    std::int32_t BindUser(const std::wstring& path, std::unique_ptr<DirectoryUser>& user) override {
        return Bind<DirectoryUser, Win32User, IADsUser>(path, IID_IADsUser, user);
    }
    std::int32_t BindGroup(const std::wstring& path,
                           std::unique_ptr<DirectoryGroup>& group) override {
        return Bind<DirectoryGroup, Win32Group, IADsGroup>(path, IID_IADsGroup, group);
    }
    std::int32_t BindSearch(const std::wstring& path,
                            std::unique_ptr<DirectorySearch>& search) override {
        return Bind<DirectorySearch, Win32Search, IDirectorySearch>(path, IID_IDirectorySearch,
                                                                    search);
    }
    std::int32_t LastExtendedError(std::uint32_t& error) override {
        DWORD code = 0;
        wchar_t text[256] = {};
        wchar_t provider[256] = {};
        const HRESULT result = ADsGetLastError(&code, text, 256, provider, 256);
        error = code;
        return result;
    }
    std::uint32_t LastError() override { return GetLastError(); }
};

}  // namespace

template <>
Directory& RealFacility<Directory>() {
    static Win32Directory real;
    return real;
}

}  // namespace vagent::os
