#include "WideCodec.h"

#include "TextNotRepresentable.h"
#include "platform/TextEncoding.h"

namespace vagentctl {

// The wide facade sends its text in this system's code page, so a text must
// fit that one as well as the target's.
WideCodec::Text WideCodec::ToTarget(const std::string& utf8) const {
    std::string encoded;
    for (const unsigned codePage : {codePage_, platform::SystemCodePage()}) {
        if (codePage_ != 0 && !platform::EncodeInCodePage(utf8, codePage, encoded)) {
            throw TextNotRepresentable(utf8, codePage);
        }
    }
    return LocalPath(utf8);
}

std::string WideCodec::FromTarget(const Text& text) const {
    return platform::WideToUtf8(text);
}

WideCodec::Text WideCodec::LocalPath(const std::string& utf8) const {
    std::wstring wide;
    if (!platform::Utf8ToWide(utf8, wide)) {
        throw TextNotRepresentable(utf8, platform::kUtf8CodePage);
    }
    return wide;
}

}  // namespace vagentctl
