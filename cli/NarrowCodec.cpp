#include "NarrowCodec.h"

#include "TextNotRepresentable.h"
#include "platform/TextEncoding.h"

namespace vagentctl {

NarrowCodec::Text NarrowCodec::ToTarget(const std::string& utf8) const {
    if (codePage_ == 0) {
        return utf8;
    }
    std::string encoded;
    if (!platform::EncodeInCodePage(utf8, codePage_, encoded)) {
        throw TextNotRepresentable(utf8, codePage_);
    }
    return encoded;
}

std::string NarrowCodec::FromTarget(const Text& text) const {
    return codePage_ == 0 ? text : platform::DecodeFromCodePage(text, codePage_);
}

}  // namespace vagentctl
