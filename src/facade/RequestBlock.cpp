#include "facade/RequestBlock.h"

#include "vagent/ResultEncoders.h"

namespace vagent::facade {

RequestBlock RequestBlock::FromEncoder(int encoded, std::uint8_t* data, std::uint32_t size) {
    RequestBlock request;
    request.data_.reset(data);
    request.size_ = size;
    request.refused_ = encoded == 0 || data == nullptr;
    return request;
}

RequestBlock RequestBlock::None() {
    return RequestBlock();
}

RequestBlock RequestBlock::List(const std::vector<std::string>& items) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    const int encoded = VecTStringToResult(items, data, size);
    return FromEncoder(encoded, data, size);
}

RequestBlock RequestBlock::Pairs(const std::vector<std::string>& first,
                                 const std::vector<std::string>& second) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    const int encoded = VecTString2ToResult(first, second, data, size);
    return FromEncoder(encoded, data, size);
}

RequestBlock RequestBlock::Triples(const std::vector<std::string>& first,
                                   const std::vector<std::string>& second,
                                   const std::vector<std::string>& third) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    const int encoded = VecTString3ToResult(first, second, third, data, size);
    return FromEncoder(encoded, data, size);
}

RequestBlock RequestBlock::Headed(const std::string& head, const std::vector<std::string>& rest) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    const int encoded = StrVecToResult(head, rest, data, size);
    return FromEncoder(encoded, data, size);
}

std::string FlagText(int flag) {
    return flag != 0 ? "1" : "0";
}

std::string DecimalText(long value) {
    return std::to_string(value);
}

}  // namespace vagent::facade
