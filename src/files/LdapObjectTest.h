#pragma once

#include <cstdint>
#include <string>

namespace vagent::files {

// Whether a directory object exists: the argument is its path when it begins
// with "LDAP://", else its name under the root site and the computer's
// domain. A non-zero kind asks for a group, so that an object of another
// kind fails the test. A failure to read the domain leaves its status in
// errorCode.
bool IsLdapObjectPresent(const std::string& nameOrPath, int kind, std::uint32_t& errorCode);

}  // namespace vagent::files
