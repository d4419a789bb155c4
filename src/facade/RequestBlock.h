#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vagent::facade {

// The one request block a remote call carries, made by the item encoders:
// none at all, a block, or nothing because the encoder refused the input
// (empty lists, lists of different lengths, no memory).
class RequestBlock {
public:
    static RequestBlock None();
    static RequestBlock List(const std::vector<std::string>& items);
    static RequestBlock Pairs(const std::vector<std::string>& first,
                              const std::vector<std::string>& second);
    static RequestBlock Triples(const std::vector<std::string>& first,
                                const std::vector<std::string>& second,
                                const std::vector<std::string>& third);
    // head first, then every item of rest.
    static RequestBlock Headed(const std::string& head, const std::vector<std::string>& rest);

    bool Refused() const { return refused_; }
    bool HasBlock() const { return data_ != nullptr; }
    const std::uint8_t* Data() const { return data_.get(); }
    std::int32_t Size() const { return static_cast<std::int32_t>(size_); }

private:
    RequestBlock() = default;
    static RequestBlock FromEncoder(int encoded, std::uint8_t* data, std::uint32_t size);

    std::unique_ptr<std::uint8_t[]> data_;
    std::uint32_t size_ = 0;
    bool refused_ = false;
};

// "1" for a non-zero flag, "0" otherwise.
std::string FlagText(int flag);
std::string DecimalText(long value);

}  // namespace vagent::facade
