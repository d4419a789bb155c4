#include <cerrno>
#include <fstream>
#include <iterator>

#include "os/ProfileFiles.h"
#include "os/Status.h"
#include "os/posix/PosixPath.h"
#include "os/posix/ProfileText.h"

namespace vagent::os {
namespace {

bool ReadText(const std::string& path, std::string& contents) {
    std::ifstream in(ToPosixPath(path), std::ios::binary);
    if (!in) {
        return false;
    }
    contents.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return true;
}

// The number at the start of a value, as the profile functions read it:
// an optional sign and decimal digits, wrapping to 32 bits.
std::uint32_t LeadingNumber(const std::string& value) {
    std::size_t at = 0;
    const bool negative = !value.empty() && value[0] == '-';
    if (!value.empty() && (value[0] == '-' || value[0] == '+')) {
        at = 1;
    }
    std::uint32_t number = 0;
    for (; at < value.size() && value[at] >= '0' && value[at] <= '9'; ++at) {
        number = number * 10u + static_cast<std::uint32_t>(value[at] - '0');
    }
    return negative ? 0u - number : number;
}

class PosixProfileFiles final : public ProfileFiles {
public:
    std::uint32_t ReadInt(const std::string& section, const std::string& key,
                          std::int32_t defaultValue, const std::string& path) override {
        std::string contents;
        std::string value;
        if (!ReadText(path, contents) || !ProfileText(contents).Find(section, key, value) ||
            value.empty()) {
            return static_cast<std::uint32_t>(defaultValue);
        }
        return LeadingNumber(value);
    }

    std::uint32_t WriteString(const std::string& section, const std::string& key,
                              const std::string& value, const std::string& path) override {
        std::string contents;
        ReadText(path, contents);
        ProfileText text(contents);
        text.Set(section, key, value);
        std::ofstream out(ToPosixPath(path), std::ios::binary | std::ios::trunc);
        if (!out) {
            return errno == ENOENT ? kPathNotFound : kAccessDenied;
        }
        out << text.Contents();
        out.flush();
        return out ? 0u : std::uint32_t{kAccessDenied};
    }
};

}  // namespace

template <>
ProfileFiles& RealFacility<ProfileFiles>() {
    static PosixProfileFiles real;
    return real;
}

}  // namespace vagent::os
