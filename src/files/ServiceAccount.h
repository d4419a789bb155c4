#pragma once

#include <cstdint>
#include <string>

namespace vagent::files {

// The account under which a service starts. Returns true with the account
// (hasAccount false when the configuration names none); false on a failing
// call. errorCode keeps the status of the last call made.
bool QueryServiceAccount(const std::string& service, std::string& account, bool& hasAccount,
                         std::uint32_t& errorCode);

// Changes the account and password under which a service starts; the
// service's display name becomes its key name. errorCode keeps the status of
// the last call made.
bool ChangeServiceAccount(const std::string& service, const std::string& account,
                          const std::string& password, std::uint32_t& errorCode);

}  // namespace vagent::files
