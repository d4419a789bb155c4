#include "vagent/ResultEncoders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "helpers/FailingAllocation.h"
#include "helpers/LogCapture.h"
#include "vagent/VPrivilege.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

using Bytes = std::vector<std::uint8_t>;

// What an encoder handed out: its truth value and a copy of the block, which
// is released here as every receiver must.
struct Encoded {
    int truth = -1;
    Bytes block;
    std::uint32_t size = 0;
};

template <typename EncodeCall>
Encoded EncodeWith(EncodeCall encode) {
    std::uint8_t* data = nullptr;
    Encoded encoded;
    encoded.truth = encode(data, encoded.size);
    if (data != nullptr) {
        encoded.block.assign(data, data + encoded.size);
    }
    delete[] data;
    return encoded;
}

Encoded Strings(const std::vector<std::string>& vec) {
    return EncodeWith([&vec](std::uint8_t*& data, std::uint32_t& size) {
        return VecTStringToResult(vec, data, size);
    });
}

Encoded Privileges(const std::vector<std::vector<std::string>>& lists) {
    std::vector<VPrivilege> privileges(lists.size());
    std::vector<VPrivilege*> pointers;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        privileges[i].names = lists[i];
        pointers.push_back(&privileges[i]);
    }
    return EncodeWith([&pointers](std::uint8_t*& data, std::uint32_t& size) {
        return Privilege2Result(pointers, data, size);
    });
}

const Bytes kOneEmptyItem = {0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0x00, 0x00};

}  // namespace

TEST(VecTStringToResult, EmptyVectorIsParameterError) {
    vagent::test::LogCapture capture;
    const Encoded encoded = Strings({});
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(encoded.block, IsEmpty());
    EXPECT_THAT(capture.Texts(), ElementsAre("VecTStringToResult : Parameter Error"));
}

TEST(VecTStringToResult, OneEmptyStringYieldsEightByteBlock) {
    const Encoded encoded = Strings({""});
    EXPECT_EQ(encoded.truth, 1);
    EXPECT_EQ(encoded.size, 8u);
    EXPECT_EQ(encoded.block, kOneEmptyItem);
}

TEST(VecTStringToResult, WritesBigEndianLengthsAndCharactersWithoutTerminators) {
    const Encoded encoded = Strings({"ab", "c"});
    EXPECT_EQ(encoded.truth, 1);
    EXPECT_EQ(encoded.block, (Bytes{0x00, 0x00, 0x00, 0x0B, 0x00, 0x00, 0x00, 0x02, 0x61, 0x62,
                                    0x00, 0x00, 0x00, 0x01, 0x63}));
    EXPECT_EQ(encoded.size, 15u);
}

TEST(VecTStringToResult, WritesLengthsAbove255InAllFourBytes) {
    const Encoded encoded = Strings({std::string(0x0102, 'x')});
    ASSERT_EQ(encoded.truth, 1);
    EXPECT_EQ(Bytes(encoded.block.begin(), encoded.block.begin() + 8),
              (Bytes{0x00, 0x00, 0x01, 0x06, 0x00, 0x00, 0x01, 0x02}));
    EXPECT_EQ(encoded.size, 0x010Au);
}

TEST(VecTStringToResult, AllocationFailureLogsPayloadLength) {
    vagent::test::LogCapture capture;
    Encoded encoded;
    {
        vagent::test::ScopedAllocationFailure failure;
        encoded = Strings({"ab", "c"});
        EXPECT_EQ(failure.Refused(), 1);
    }
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("VecTStringToResult : new [11] bytes failed"));
}

TEST(VecTStringToResult, FailureLeavesOutputsUntouched) {
    std::uint8_t marker = 0;
    std::uint8_t* data = &marker;
    std::uint32_t size = 77;
    EXPECT_EQ(VecTStringToResult({}, data, size), 0);
    EXPECT_EQ(data, &marker);
    EXPECT_EQ(size, 77u);
}

TEST(StrVecToResult, EmptyHeadAndEmptyVectorYieldEightByteBlock) {
    const Encoded encoded = EncodeWith([](std::uint8_t*& data, std::uint32_t& size) {
        return StrVecToResult("", {}, data, size);
    });
    EXPECT_EQ(encoded.truth, 1);
    EXPECT_EQ(encoded.size, 8u);
    EXPECT_EQ(encoded.block, kOneEmptyItem);
}

TEST(StrVecToResult, WritesHeadBeforeElements) {
    const Encoded encoded = EncodeWith([](std::uint8_t*& data, std::uint32_t& size) {
        return StrVecToResult("g", {"u1", "u2"}, data, size);
    });
    EXPECT_EQ(encoded.truth, 1);
    EXPECT_EQ(encoded.block,
              (Bytes{0x00, 0x00, 0x00, 0x11, 0x00, 0x00, 0x00, 0x01, 0x67, 0x00, 0x00,
                     0x00, 0x02, 0x75, 0x31, 0x00, 0x00, 0x00, 0x02, 0x75, 0x32}));
}

TEST(StrVecToResult, AllocationFailureLogsPayloadLength) {
    vagent::test::LogCapture capture;
    vagent::test::ScopedAllocationFailure failure;
    const Encoded encoded = EncodeWith([](std::uint8_t*& data, std::uint32_t& size) {
        return StrVecToResult("g", {"u1"}, data, size);
    });
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("StrVecToResult : new [11] bytes failed"));
}

TEST(VecTString2ToResult, InterleavesThePairs) {
    const Encoded encoded = EncodeWith([](std::uint8_t*& data, std::uint32_t& size) {
        return VecTString2ToResult({"a", "b"}, {"1", "2"}, data, size);
    });
    EXPECT_EQ(encoded.truth, 1);
    EXPECT_EQ(encoded.block,
              (Bytes{0x00, 0x00, 0x00, 0x14, 0x00, 0x00, 0x00, 0x01, 0x61, 0x00, 0x00, 0x00,
                     0x01, 0x31, 0x00, 0x00, 0x00, 0x01, 0x62, 0x00, 0x00, 0x00, 0x01, 0x32}));
}

TEST(VecTString2ToResult, DifferentLengthsAreRefusedBeforeSumming) {
    vagent::test::LogCapture capture;
    const Encoded encoded = EncodeWith([](std::uint8_t*& data, std::uint32_t& size) {
        return VecTString2ToResult({}, {"x"}, data, size);
    });
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("VecTString2ToResult : vec1.size != vec2.size"));
}

TEST(VecTString2ToResult, EmptyVectorsAreParameterError) {
    vagent::test::LogCapture capture;
    const Encoded encoded = EncodeWith([](std::uint8_t*& data, std::uint32_t& size) {
        return VecTString2ToResult({}, {}, data, size);
    });
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("VecTString2ToResult : Parameter Error"));
}

TEST(VecTString2ToResult, AllocationFailureLogsPayloadLength) {
    vagent::test::LogCapture capture;
    vagent::test::ScopedAllocationFailure failure;
    const Encoded encoded = EncodeWith([](std::uint8_t*& data, std::uint32_t& size) {
        return VecTString2ToResult({"a"}, {"bc"}, data, size);
    });
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("VecTString2ToResult : new [11] bytes failed"));
}

TEST(VecTString3ToResult, InterleavesTheTriples) {
    const Encoded encoded = EncodeWith([](std::uint8_t*& data, std::uint32_t& size) {
        return VecTString3ToResult({"a", "b"}, {"1", "2"}, {"", "z"}, data, size);
    });
    EXPECT_EQ(encoded.truth, 1);
    EXPECT_EQ(encoded.block,
              (Bytes{0x00, 0x00, 0x00, 0x1D, 0x00, 0x00, 0x00, 0x01, 0x61, 0x00, 0x00,
                     0x00, 0x01, 0x31, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01,
                     0x62, 0x00, 0x00, 0x00, 0x01, 0x32, 0x00, 0x00, 0x00, 0x01, 0x7A}));
}

TEST(VecTString3ToResult, FirstTwoLengthsDifferingIsRefused) {
    vagent::test::LogCapture capture;
    const Encoded encoded = EncodeWith([](std::uint8_t*& data, std::uint32_t& size) {
        return VecTString3ToResult({"a", "b"}, {"1"}, {"x", "y"}, data, size);
    });
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("vec1.size != vec2.size || vec2.size != vec3.size"));
}

TEST(VecTString3ToResult, LastTwoLengthsDifferingIsRefused) {
    vagent::test::LogCapture capture;
    const Encoded encoded = EncodeWith([](std::uint8_t*& data, std::uint32_t& size) {
        return VecTString3ToResult({"a"}, {"1"}, {}, data, size);
    });
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("vec1.size != vec2.size || vec2.size != vec3.size"));
}

TEST(VecTString3ToResult, EmptyVectorsAreParameterError) {
    vagent::test::LogCapture capture;
    const Encoded encoded = EncodeWith([](std::uint8_t*& data, std::uint32_t& size) {
        return VecTString3ToResult({}, {}, {}, data, size);
    });
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("VecTString3ToResult : Parameter Error"));
}

TEST(VecTString3ToResult, AllocationFailureLogsPayloadLength) {
    vagent::test::LogCapture capture;
    vagent::test::ScopedAllocationFailure failure;
    const Encoded encoded = EncodeWith([](std::uint8_t*& data, std::uint32_t& size) {
        return VecTString3ToResult({"a"}, {"b"}, {"c"}, data, size);
    });
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("VecTString3ToResult : new [15] bytes failed"));
}

TEST(VecUser2Result, WritesNameThenCommentOfEachRecord) {
    const std::vector<_VXUserInfoA> users = {{"al", "x"}, {"b", ""}};
    const Encoded encoded = EncodeWith([&users](std::uint8_t*& data, std::uint32_t& size) {
        return VecUser2Result(users, data, size);
    });
    EXPECT_EQ(encoded.truth, 1);
    EXPECT_EQ(encoded.block,
              (Bytes{0x00, 0x00, 0x00, 0x14, 0x00, 0x00, 0x00, 0x02, 0x61, 0x6C, 0x00, 0x00,
                     0x00, 0x01, 0x78, 0x00, 0x00, 0x00, 0x01, 0x62, 0x00, 0x00, 0x00, 0x00}));
}

TEST(VecUser2Result, EmptyVectorIsParameterError) {
    vagent::test::LogCapture capture;
    const Encoded encoded = EncodeWith(
        [](std::uint8_t*& data, std::uint32_t& size) { return VecUser2Result({}, data, size); });
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("VecUser2Result : Parameter Error"));
}

TEST(VecUser2Result, AllocationFailureLogsPayloadLength) {
    vagent::test::LogCapture capture;
    vagent::test::ScopedAllocationFailure failure;
    const std::vector<_VXUserInfoA> users = {{"al", "x"}};
    const Encoded encoded = EncodeWith([&users](std::uint8_t*& data, std::uint32_t& size) {
        return VecUser2Result(users, data, size);
    });
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("VecUser2Result : new [11] bytes failed"));
}

TEST(VecUserGroup2Result, WritesEachName) {
    const std::vector<_VXUserGroupA> groups = {{"g1"}, {"h"}};
    const Encoded encoded = EncodeWith([&groups](std::uint8_t*& data, std::uint32_t& size) {
        return VecUserGroup2Result(groups, data, size);
    });
    EXPECT_EQ(encoded.truth, 1);
    EXPECT_EQ(encoded.block, (Bytes{0x00, 0x00, 0x00, 0x0B, 0x00, 0x00, 0x00, 0x02, 0x67, 0x31,
                                    0x00, 0x00, 0x00, 0x01, 0x68}));
}

TEST(VecUserGroup2Result, EmptyVectorIsParameterError) {
    vagent::test::LogCapture capture;
    const Encoded encoded = EncodeWith([](std::uint8_t*& data, std::uint32_t& size) {
        return VecUserGroup2Result({}, data, size);
    });
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("VecUserGroup2Result : Parameter Error"));
}

TEST(VecUserGroup2Result, AllocationFailureLogsPayloadLength) {
    vagent::test::LogCapture capture;
    vagent::test::ScopedAllocationFailure failure;
    const std::vector<_VXUserGroupA> groups = {{"g1"}};
    const Encoded encoded = EncodeWith([&groups](std::uint8_t*& data, std::uint32_t& size) {
        return VecUserGroup2Result(groups, data, size);
    });
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("VecUserGroup2Result : new [6] bytes failed"));
}

TEST(Privilege2Result, EachLengthFieldOverwritesThePreviousName) {
    const Encoded encoded = Privileges({{"ab"}, {"cd"}});
    EXPECT_EQ(encoded.truth, 1);
    EXPECT_EQ(encoded.size, 16u);
    // The last 2 bytes are never written; the block is handed out zeroed.
    EXPECT_EQ(encoded.block, (Bytes{0x00, 0x00, 0x00, 0x0C, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00,
                                    0x00, 0x02, 0x63, 0x64, 0x00, 0x00}));
}

TEST(Privilege2Result, SingleNameYieldsWellFormedBlock) {
    const Encoded encoded = Privileges({{"SeDebug"}});
    EXPECT_EQ(encoded.truth, 1);
    EXPECT_EQ(encoded.block, (Bytes{0x00, 0x00, 0x00, 0x0B, 0x00, 0x00, 0x00, 0x07, 0x53, 0x65,
                                    0x44, 0x65, 0x62, 0x75, 0x67}));
}

TEST(Privilege2Result, NamesOfOnePrivilegeAlsoOverlap) {
    const Encoded encoded = Privileges({{"abcdef", "xy"}});
    EXPECT_EQ(encoded.truth, 1);
    EXPECT_EQ(encoded.block, (Bytes{0x00, 0x00, 0x00, 0x10, 0x00, 0x00, 0x00, 0x06, 0x00, 0x00,
                                    0x00, 0x02, 0x78, 0x79, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00}));
}

TEST(Privilege2Result, NullPrivilegeIsSkipped) {
    VPrivilege privilege;
    privilege.names = {"ab"};
    const std::vector<VPrivilege*> pointers = {nullptr, &privilege};
    const Encoded encoded = EncodeWith([&pointers](std::uint8_t*& data, std::uint32_t& size) {
        return Privilege2Result(pointers, data, size);
    });
    EXPECT_EQ(encoded.truth, 1);
    EXPECT_EQ(encoded.block, (Bytes{0x00, 0x00, 0x00, 0x06, 0x00, 0x00, 0x00, 0x02, 0x61, 0x62}));
}

TEST(Privilege2Result, PrivilegesWithoutNamesAreParameterError) {
    vagent::test::LogCapture capture;
    const Encoded encoded = Privileges({{}, {}});
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("Privilege2Result : Parameter Error"));
}

TEST(Privilege2Result, AllocationFailureLogsPayloadLength) {
    vagent::test::LogCapture capture;
    vagent::test::ScopedAllocationFailure failure;
    const Encoded encoded = Privileges({{"ab"}, {"cd"}});
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("Privilege2Result : new [12] bytes failed"));
}

TEST(Ack2Result, WritesFourThenTheValueBigEndian) {
    const Encoded encoded = EncodeWith([](std::uint8_t*& data, std::uint32_t& size) {
        return Ack2Result(0x0102A0FFu, data, size);
    });
    EXPECT_EQ(encoded.truth, 1);
    EXPECT_EQ(encoded.size, 8u);
    EXPECT_EQ(encoded.block, (Bytes{0x00, 0x00, 0x00, 0x04, 0x01, 0x02, 0xA0, 0xFF}));
}

TEST(Ack2Result, AllocationFailureLogsEightBytes) {
    vagent::test::LogCapture capture;
    vagent::test::ScopedAllocationFailure failure;
    const Encoded encoded = EncodeWith(
        [](std::uint8_t*& data, std::uint32_t& size) { return Ack2Result(1, data, size); });
    EXPECT_EQ(encoded.truth, 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("Ack2Result : new [8] bytes failed"));
}
