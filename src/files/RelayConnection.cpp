#include "files/RelayConnection.h"

#include "vagent/ErrorCodes.h"
#include "vagent/LdapRootSite.h"
#include "vagent/ResultEncoders.h"

namespace vagent::files {

std::uint32_t RelayConnection::SendRequest(const std::string& host, const std::string& port,
                                           std::uint32_t taskId, std::int32_t workEnv,
                                           const std::vector<std::string>& items) {
    client_.SetServer(host.c_str(), port.c_str());
    if (client_.SetTask(taskId) == 0) {
        return kErrorInvalidParameter;
    }
    std::uint8_t* block = nullptr;
    std::uint32_t blockSize = 0;
    if (VecTStringToResult(items, block, blockSize) == 0) {
        return kErrorNotEnoughMemory;
    }
    const int queued = client_.AddRequest(block, static_cast<std::int32_t>(blockSize));
    delete[] block;
    if (queued == 0) {
        return kErrorNotEnoughMemory;
    }
    if (client_.SendRequest(workEnv, GetLDAPRootSite(), os::kInvalidSocket, nullptr) == 0) {
        return client_.GetLastStatus();
    }
    return 0;
}

}  // namespace vagent::files
