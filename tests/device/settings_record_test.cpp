#include "device/settings_record.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <span>
#include <string>
#include <string_view>

namespace {

using Bytes = std::array<std::uint8_t, 23>;

/// Every byte different, and none of them a default.
constexpr Bytes Counted = {0x40, 0x41, 0x42, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x4A, 0x4B,
                           0x4C, 0x4D, 0x4E, 0x4F, 0x50, 0x51, 0x52, 0x53, 0x54, 0x55, 0x56};

Bytes imageOf(const configDescriptor& record) {
    Bytes image;
    std::memcpy(image.data(), &record, image.size());
    return image;
}

configDescriptor recordOf(const Bytes& image) {
    configDescriptor record;
    std::memcpy(&record, image.data(), image.size());
    return record;
}

TEST(SettingsRecord, HasItsFieldsInTheOrderOfTheirBytes) {
    using Record = configDescriptor;
    constexpr std::uint8_t Record::*Fields[] = {
        &Record::inputMode,     &Record::paletteIndex,  &Record::deviceParam2,
        &Record::deviceParam3,  &Record::deviceParam4,  &Record::deviceParam5,
        &Record::deviceParam6,  &Record::deviceParam7,  &Record::deviceParam8,
        &Record::deviceParam9,  &Record::deviceParam10, &Record::deviceParam11,
        &Record::deviceParam12, &Record::deviceParam13, &Record::deviceParam14,
        &Record::deviceParam15, &Record::deviceParam16, &Record::deviceParam17,
        &Record::deviceParam18, &Record::deviceParam19, &Record::deviceParam20,
        &Record::enhancer,      &Record::brightness};
    ASSERT_EQ(std::size(Fields), Counted.size());
    const configDescriptor record = recordOf(Counted);
    for (std::size_t byte = 0; byte < Counted.size(); ++byte) {
        EXPECT_EQ(record.*Fields[byte], Counted[byte]) << "byte " << byte;
    }
}

/// A record constructed over memory that is full of one byte.
class SettingsRecordConstructedOver : public testing::TestWithParam<int> {
protected:
    Bytes construct() const {
        Bytes memory;
        memory.fill(static_cast<std::uint8_t>(GetParam()));
        // The compiler must not know what the constructor works on: it could drop the filling.
        std::uint8_t* volatile place = memory.data();
        new (place) configDescriptor;
        return memory;
    }
};

TEST_P(SettingsRecordConstructedOver, HasTheFactorySettings) {
    const Bytes image = construct();
    EXPECT_THAT(std::span(image).first<10>(),
                testing::ElementsAre(0, 0, 15, 10, 15, 12, 15, 0, 15, 15));
    EXPECT_THAT(std::span(image).last<4>(), testing::ElementsAre(0, 1, 1, 30));
}

TEST_P(SettingsRecordConstructedOver, LeavesBytes10To18Alone) {
    const Bytes image = construct();
    EXPECT_THAT(std::span(image).subspan(10, 9), testing::Each(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(MemoryFullOf, SettingsRecordConstructedOver,
                         testing::Values(0x00, 0x55, 0xAA, 0xFF),
                         [](const auto& test) { return "Byte" + std::to_string(test.param); });

TEST(SettingsRecord, TurnsIntoItsBytesInOrder) {
    EXPECT_EQ(settings::bytesOf(recordOf(Counted)), Counted);
}

TEST(SettingsRecord, IsMadeOfItsBytesInOrder) {
    EXPECT_EQ(imageOf(settings::fromBytes(Counted)), Counted);
}

/// What a reply makes of the record 40 41 .. 56 and of a version text of 9 characters.
struct Applied {
    explicit Applied(const settings::Reply& reply) {
        configDescriptor settings = recordOf(Counted);
        settings::applyReply(reply, settings, version.data());
        record = imageOf(settings);
    }

    Bytes record{};
    std::array<char, 9> version = {'o', 'l', 'd', '-', 't', 'e', 'x', 't', '!'};
};

TEST(SettingsReply, OfTheNewerLayoutGivesVersionAndWholeRecord) {
    // Bytes 0..3 and from 33 on mean nothing to the tool.
    const Applied applied({0xE0, 0xE1, 0xE2, 0xE3, 'V',  '4',  '.',  '0',  '2',  'b',  0x01,
                           0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0A, 0x0B, 0x0C,
                           0x0D, 0x0E, 0x0F, 0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17,
                           0xE4, 0xE5, 0xE6, 0xE7, 0xE8, 0xE9, 0xEA, 0xEB, 0xEC, 0xED, 0xEE});
    EXPECT_EQ(applied.record,
              (Bytes{0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0A, 0x0B, 0x0C,
                     0x0D, 0x0E, 0x0F, 0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17}));
    EXPECT_EQ(std::string_view(applied.version.data(), 9), "V4.02bxt!");
}

TEST(SettingsReply, OfTheOlderLayoutGivesFourSettingsAndNoVersion) {
    const Applied applied({0x0B, 0xC8, 0x01, 0x07, 0xE4, 0xE5, 0xE6, 0xE7});
    EXPECT_EQ(applied.record,
              (Bytes{0x0B, 0x07, 0x42, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x4A, 0x4B,
                     0x4C, 0x4D, 0x4E, 0x4F, 0x50, 0x51, 0x52, 0x53, 0x54, 0x01, 0xC8}));
    EXPECT_EQ(std::string_view(applied.version.data(), 9), "old-text!");
}

class SettingsReplyWithByte4 : public testing::TestWithParam<int> {};

TEST_P(SettingsReplyWithByte4, OtherThanVIsOfTheOlderLayout) {
    settings::Reply reply = {0x0B, 0xC8, 0x01, 0x07};
    reply[4] = static_cast<std::uint8_t>(GetParam());
    std::fill(reply.begin() + 5, reply.end(), std::uint8_t{0xEE});
    const Applied applied(reply);
    EXPECT_EQ(applied.record,
              (Bytes{0x0B, 0x07, 0x42, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x4A, 0x4B,
                     0x4C, 0x4D, 0x4E, 0x4F, 0x50, 0x51, 0x52, 0x53, 0x54, 0x01, 0xC8}));
    EXPECT_EQ(std::string_view(applied.version.data(), 9), "old-text!");
}

INSTANTIATE_TEST_SUITE_P(Sample, SettingsReplyWithByte4,
                         testing::Values(0x00, 0x01, 0x55, 0x57, 'v', 0xD6, 0xFF),
                         [](const auto& test) { return "Being" + std::to_string(test.param); });

}  // namespace
