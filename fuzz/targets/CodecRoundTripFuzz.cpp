// Encodes records and lists made from the input, decodes the block again and
// aborts unless the same values come back: every encoder of result blocks
// (and the ItemBlock under the family encoders) against its decoder, and the
// byte stream's puts against its gets. The first byte chooses the codec.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "sessions/PrinterCodecs.h"
#include "sessions/SessionCodecs.h"
#include "task/ItemBlock.h"
#include "vagent/DataItemCursor.h"
#include "vagent/ResultDecoders.h"
#include "vagent/ResultEncoders.h"
#include "vagent/VByteStream.h"
#include "vagent/VPrivilege.h"

namespace {

void Check(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// Takes values from the input front to back; past its end every value is
// zero or empty.
class InputReader {
public:
    InputReader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    std::uint8_t Byte() { return at_ < size_ ? data_[at_++] : 0; }
    std::uint32_t Word() {
        std::uint32_t word = 0;
        for (int i = 0; i < 4; ++i) {
            word = (word << 8) | Byte();
        }
        return word;
    }
    // A text of up to 63 bytes. The item decoders cut a text at its first
    // zero byte, so with keepZeros false none is made.
    std::string Text(bool keepZeros) {
        std::string text;
        const std::size_t length = Byte() % 64;
        for (std::size_t i = 0; i < length && at_ < size_; ++i) {
            const std::uint8_t byte = Byte();
            text.push_back(static_cast<char>(keepZeros || byte != 0 ? byte : 1));
        }
        return text;
    }
    std::vector<std::string> Texts(std::size_t count, bool keepZeros) {
        std::vector<std::string> texts;
        for (std::size_t i = 0; i < count; ++i) {
            texts.push_back(Text(keepZeros));
        }
        return texts;
    }
    std::size_t Count() { return Byte() % 9; }

private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t at_ = 0;
};

// The block's payload after checking that its prefix counts it exactly.
struct Payload {
    const std::uint8_t* bytes;
    std::uint32_t length;
};

Payload PayloadOf(const std::uint8_t* block, std::uint32_t size) {
    Check(block != nullptr && size >= 4);
    const std::uint32_t prefix = (std::uint32_t{block[0]} << 24) | (std::uint32_t{block[1]} << 16) |
                                 (std::uint32_t{block[2]} << 8) | std::uint32_t{block[3]};
    Check(prefix == size - 4);
    return Payload{block + 4, size - 4};
}

// Runs the encoder; an empty input must be refused, any other encoded; the
// check sees the payload of what was encoded.
template <class Encode, class Decode>
void RoundTrip(bool empty, Encode encode, Decode decodeAndCheck) {
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    const int encoded = encode(block, size);
    if (empty) {
        Check(encoded == 0 && block == nullptr);
        return;
    }
    Check(encoded == 1);
    const Payload payload = PayloadOf(block, size);
    decodeAndCheck(payload);
    delete[] block;
}

void StringList(InputReader& in) {
    const std::vector<std::string> vec = in.Texts(in.Count(), false);
    RoundTrip(
        vec.empty(),
        [&](std::uint8_t*& b, std::uint32_t& s) { return VecTStringToResult(vec, b, s); },
        [&](const Payload& p) {
            std::vector<std::string> back = {"stale"};
            Check(Data2VecTString(p.bytes, p.length, back) == 1 && back == vec);
        });
}

void HeadAndList(InputReader& in) {
    const std::string head = in.Text(false);
    const std::vector<std::string> vec = in.Texts(in.Count(), false);
    RoundTrip(
        false, [&](std::uint8_t*& b, std::uint32_t& s) { return StrVecToResult(head, vec, b, s); },
        [&](const Payload& p) {
            std::string group;
            std::vector<std::string> users;
            Check(Data2GroupUser(p.bytes, p.length, group, users) == 1);
            Check(group == head && users == vec);
        });
}

void Pairs(InputReader& in) {
    const std::size_t count = in.Count();
    const std::vector<std::string> first = in.Texts(count, false);
    const std::vector<std::string> second = in.Texts(count, false);
    RoundTrip(
        count == 0,
        [&](std::uint8_t*& b, std::uint32_t& s) {
            return VecTString2ToResult(first, second, b, s);
        },
        [&](const Payload& p) {
            std::vector<std::string> one;
            std::vector<std::string> two;
            Check(Data2VecTString2(p.bytes, p.length, one, two) == 1);
            Check(one == first && two == second);
        });
}

void Triples(InputReader& in) {
    const std::size_t count = in.Count();
    const std::vector<std::string> first = in.Texts(count, false);
    const std::vector<std::string> second = in.Texts(count, false);
    const std::vector<std::string> third = in.Texts(count, false);
    RoundTrip(
        count == 0,
        [&](std::uint8_t*& b, std::uint32_t& s) {
            return VecTString3ToResult(first, second, third, b, s);
        },
        [&](const Payload& p) {
            std::vector<std::string> one;
            std::vector<std::string> two;
            std::vector<std::string> three;
            Check(Data2VecTString3(p.bytes, p.length, one, two, three) == 1);
            Check(one == first && two == second && three == third);
        });
}

void Users(InputReader& in) {
    std::vector<_VXUserInfoA> users(in.Count());
    for (_VXUserInfoA& user : users) {
        user.name = in.Text(false);
        user.comment = in.Text(false);
    }
    RoundTrip(
        users.empty(),
        [&](std::uint8_t*& b, std::uint32_t& s) { return VecUser2Result(users, b, s); },
        [&](const Payload& p) {
            std::vector<_VXUserInfoA> back;
            Check(Data2VecUser(p.bytes, p.length, back) == 1 && back.size() == users.size());
            for (std::size_t i = 0; i < users.size(); ++i) {
                Check(back[i].name == users[i].name && back[i].comment == users[i].comment);
            }
        });
}

void UserGroups(InputReader& in) {
    std::vector<_VXUserGroupA> groups(in.Count());
    for (_VXUserGroupA& group : groups) {
        group.name = in.Text(false);
    }
    RoundTrip(
        groups.empty(),
        [&](std::uint8_t*& b, std::uint32_t& s) { return VecUserGroup2Result(groups, b, s); },
        [&](const Payload& p) {
            std::vector<_VXUserGroupA> back;
            Check(Data2VecUserGroup(p.bytes, p.length, back) == 1 && back.size() == groups.size());
            for (std::size_t i = 0; i < groups.size(); ++i) {
                Check(back[i].name == groups[i].name);
            }
        });
}

// A privilege block is well formed only for a single name, which the decoder
// reads as the dropped head: one privilege with an empty list comes back.
void SinglePrivilege(InputReader& in) {
    VPrivilege privilege;
    privilege.names.push_back(in.Text(false));
    const std::vector<VPrivilege*> privileges = {&privilege};
    RoundTrip(
        false,
        [&](std::uint8_t*& b, std::uint32_t& s) { return Privilege2Result(privileges, b, s); },
        [&](const Payload& p) {
            std::vector<VPrivilege*> back;
            Check(Result2Privilege(p.bytes, p.length, back) == 1 && back.size() == 1);
            Check(back[0]->names.empty());
            delete back[0];
        });
}

void Acknowledgement(InputReader& in) {
    const std::uint32_t value = in.Word();
    RoundTrip(
        false, [&](std::uint8_t*& b, std::uint32_t& s) { return Ack2Result(value, b, s); },
        [&](const Payload& p) {
            std::uint32_t back = ~value;
            Check(Result2Ack(p.bytes, p.length, back) == 1 && back == value);
        });
}

void Sessions(InputReader& in) {
    std::vector<_VXSessionA> sessions(in.Count());
    for (_VXSessionA& session : sessions) {
        session.sessionId = static_cast<std::int32_t>(in.Word());
        session.info1 = in.Text(true);
        session.macAddress = in.Text(true);
        session.info3 = in.Text(true);
        session.clientAddress = in.Text(true);
    }
    RoundTrip(
        sessions.empty(),
        [&](std::uint8_t*& b, std::uint32_t& s) {
            return vagent::SessionInfo2Result(sessions, b, s);
        },
        [&](const Payload& p) {
            std::vector<_VXSessionA> back;
            Check(vagent::Result2SessionInfo(p.bytes, p.length, back) == 1);
            Check(back.size() == sessions.size());
            for (std::size_t i = 0; i < back.size(); ++i) {
                Check(back[i].sessionId == sessions[i].sessionId &&
                      back[i].info1 == sessions[i].info1 &&
                      back[i].macAddress == sessions[i].macAddress &&
                      back[i].info3 == sessions[i].info3 &&
                      back[i].clientAddress == sessions[i].clientAddress);
            }
        });
}

void SessionCount(InputReader& in) {
    const auto count = static_cast<std::int32_t>(in.Word());
    RoundTrip(
        false,
        [&](std::uint8_t*& b, std::uint32_t& s) {
            return vagent::SessionCount2Result(count, b, s);
        },
        [&](const Payload& p) {
            int back = 0;
            Check(vagent::Result2SessionCount(p.bytes, p.length, back) == (count >= 0 ? 1 : 0));
            Check(back == count);
        });
}

void Printers(InputReader& in) {
    std::vector<_VXPrinterA> printers(in.Count());
    for (_VXPrinterA& printer : printers) {
        printer.sessionId = static_cast<std::int32_t>(in.Word());
        printer.printerName = in.Text(true);
    }
    RoundTrip(
        printers.empty(),
        [&](std::uint8_t*& b, std::uint32_t& s) {
            return vagent::PrintInfo2Result(printers, b, s);
        },
        [&](const Payload& p) {
            std::vector<_VXPrinterA> back;
            Check(vagent::Result2PrintInfo(p.bytes, p.length, back) == 1);
            Check(back.size() == printers.size());
            for (std::size_t i = 0; i < back.size(); ++i) {
                Check(back[i].sessionId == printers[i].sessionId &&
                      back[i].printerName == printers[i].printerName);
            }
        });
}

// Numbers and texts put into an ItemBlock come back, item by item, from the
// cursor.
void Items(InputReader& in) {
    const std::size_t count = in.Count() + 1;
    std::vector<std::string> texts;
    std::vector<std::int32_t> numbers;
    std::uint64_t payload = 0;
    for (std::size_t i = 0; i < count; ++i) {
        numbers.push_back(static_cast<std::int32_t>(in.Word()));
        texts.push_back(in.Text(true));
        payload +=
            vagent::ItemBlock::ItemSize(4) + vagent::ItemBlock::ItemSize(texts.back().size());
    }
    vagent::ItemBlock block;
    Check(block.Allocate(payload));
    for (std::size_t i = 0; i < count; ++i) {
        block.PutNumber(numbers[i]);
        block.PutText(texts[i]);
    }
    std::uint32_t size = 0;
    std::uint8_t* bytes = block.Release(size);
    Check(size == payload + 4);
    const Payload p = PayloadOf(bytes, size);
    DataItemCursor cursor(p.bytes, p.length);
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t length = 0;
        const std::uint8_t* item = cursor.GetNextDataItem(length);
        Check(item != nullptr && length == 4);
        const std::uint32_t number = (std::uint32_t{item[0]} << 24) |
                                     (std::uint32_t{item[1]} << 16) |
                                     (std::uint32_t{item[2]} << 8) | std::uint32_t{item[3]};
        Check(static_cast<std::int32_t>(number) == numbers[i]);
        item = cursor.GetNextDataItem(length);
        Check(length == texts[i].size());
        Check(std::string(reinterpret_cast<const char*>(item), length) == texts[i]);
    }
    std::uint32_t end = 1;
    Check(cursor.GetNextDataItem(end) == nullptr && end == 0);
    delete[] bytes;
}

// Double words and texts put into the byte stream come back in order.
void Stream(InputReader& in) {
    VByteStream stream(in.Byte(), in.Byte());
    const std::size_t count = in.Count();
    std::vector<std::uint32_t> words;
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < count; ++i) {
        words.push_back(in.Word());
        texts.push_back(in.Text(false));
        Check(stream.PutDword(words.back()) == 1 && stream.PutString(texts.back()) == 1);
    }
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t word = 0;
        std::string text;
        Check(stream.GetDword(word) == 1 && word == words[i]);
        Check(stream.GetString(text) == 1 && text == texts[i]);
    }
    std::uint32_t more = 0;
    Check(stream.GetDword(more) == 0);
}

using Codec = void (*)(InputReader&);
constexpr Codec kCodecs[] = {StringList, HeadAndList,     Pairs,           Triples,  Users,
                             UserGroups, SinglePrivilege, Acknowledgement, Sessions, SessionCount,
                             Printers,   Items,           Stream};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    InputReader in(data, size);
    const std::uint8_t choice = in.Byte();
    kCodecs[choice % (sizeof kCodecs / sizeof kCodecs[0])](in);
    return 0;
}
