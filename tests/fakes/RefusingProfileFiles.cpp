#include "fakes/RefusingProfileFiles.h"

namespace vagent::test {

std::uint32_t RefusingProfileFiles::ReadInt(const std::string&, const std::string&,
                                            std::int32_t defaultValue, const std::string&) {
    ++refused;
    return static_cast<std::uint32_t>(defaultValue);
}

std::uint32_t RefusingProfileFiles::WriteString(const std::string&, const std::string&,
                                                const std::string&, const std::string&) {
    ++refused;
    return kRefused;
}

}  // namespace vagent::test
