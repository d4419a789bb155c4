#include "service/EndToEndHost.h"

namespace vagent::test {

EndToEndHost::EndToEndHost() {
    const std::wstring domain = L"DC=corp,DC=example,DC=com";
    directory.AddEntry(domain, L"domain");
    directory.AddEntry(L"CN=Users," + domain, L"container");
    directory.AddEntry(L"CN=Staff," + domain, L"container");
}

}  // namespace vagent::test
