#include "simulator/controller.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/simulator/packets.h"

using packets::command;
using packets::padded;
using simulator::Controller;
using simulator::ControllerOptions;
using simulator::Packet;
using simulator::Palette;
using simulator::Record;
using simulator::SettingsLayout;

namespace {

const Palette Vga = {0x00, 0x00, 0x00, 0x80, 0x00, 0x00, 0xFF, 0x00, 0x00, 0xFF, 0x00, 0xFF,
                     0x00, 0x80, 0x80, 0x00, 0x80, 0x00, 0x00, 0xFF, 0x00, 0x00, 0xFF, 0xFF,
                     0x00, 0x00, 0x80, 0x80, 0x00, 0x80, 0x00, 0x00, 0xFF, 0x40, 0x40, 0x40,
                     0x80, 0x80, 0x80, 0x80, 0x80, 0x00, 0xFF, 0xFF, 0x00, 0xFF, 0xFF, 0xFF};

const Packet RecordFrame = command({0x20, 2,  3,  11, 12, 13, 14, 15, 16, 17, 18, 19,
                                    20,   21, 22, 23, 24, 25, 26, 27, 28, 29, 1,  99});
const Record SentRecord = {2,  3,  11, 12, 13, 14, 15, 16, 17, 18, 19, 20,
                           21, 22, 23, 24, 25, 26, 27, 28, 29, 1,  99};

/// A board whose clock the test turns.
struct ControllerTest : testing::Test {
    ControllerOptions options() {
        ControllerOptions made;
        made.clock = [this] { return clock; };
        return made;
    }

    std::uint64_t clock = 0;
    Controller board{options()};
};

Packet slice(const Packet& packet, std::size_t from, std::size_t count) {
    const auto start = packet.begin() + static_cast<std::ptrdiff_t>(from);
    return Packet(start, start + static_cast<std::ptrdiff_t>(count));
}

Packet textBytes(const std::string& text) { return Packet(text.begin(), text.end()); }

}  // namespace

TEST_F(ControllerTest, StartsWithItsDefaultsAndNothingToSay) {
    const Record defaults = {0, 0, 15, 10, 15, 12, 15, 0, 15, 15, 0, 0,
                             0, 0, 0,  0,  0,  0,  0,  0, 1,  1,  30};
    EXPECT_EQ(board.working(), defaults);
    EXPECT_EQ(board.permanent(), defaults);
    EXPECT_EQ(board.palette(), Vga);
    EXPECT_EQ(board.permanentPalette(), Vga);
    EXPECT_EQ(board.takeReply(), std::nullopt);
    EXPECT_EQ(board.image(), std::nullopt);
}

TEST_F(ControllerTest, NewerSettingsReplyCarriesVersionAndRecord) {
    board.receive(RecordFrame);
    board.receive(command({0x10}));
    const Packet reply = board.takeReply().value();
    ASSERT_EQ(reply.size(), 63U);
    EXPECT_EQ(slice(reply, 4, 6), textBytes("V4.02b"));
    EXPECT_EQ(slice(reply, 10, 23), Packet(SentRecord.begin(), SentRecord.end()));
    EXPECT_EQ(board.takeReply(), std::nullopt);
}

TEST_F(ControllerTest, OlderSettingsReplyCarriesFourSettingsAndNoVersion) {
    ControllerOptions older = options();
    older.layout = SettingsLayout::Older;
    Controller old(older);
    old.receive(RecordFrame);
    old.receive(command({0x10}));
    EXPECT_EQ(old.takeReply(), padded({2, 99, 1, 3}, 63));
}

TEST_F(ControllerTest, FirmwareTextIsSentAsSixCharacters) {
    const std::pair<std::string, Packet> cases[] = {
        {"V1", {'V', '1', 0, 0, 0, 0}},
        {"V12.3456", {'V', '1', '2', '.', '3', '4'}},
        {"", {0, 0, 0, 0, 0, 0}},
    };
    for (const auto& [firmware, sent] : cases) {
        ControllerOptions made = options();
        made.firmware = firmware;
        Controller other(made);
        other.receive(command({0x10}));
        EXPECT_EQ(slice(other.takeReply().value(), 4, 6), sent) << firmware;
    }
}

TEST_F(ControllerTest, UniqueIdIsAZeroTerminatedText) {
    board.receive(command({0x11}));
    EXPECT_EQ(board.takeReply(), padded({'3', 'A', '7', 'F', '0', '0', 'C', '2', '1', 'D', '5', 'E',
                                         '9', 'B', '6', '4'},
                                        63));
}

TEST_F(ControllerTest, LongUniqueIdIsCutBeforeTheLastZero) {
    ControllerOptions made = options();
    made.uniqueId = std::string(100, 'x');
    Controller other(made);
    other.receive(command({0x11}));
    EXPECT_EQ(other.takeReply(), textBytes(std::string(62, 'x') + '\0'));
}

TEST_F(ControllerTest, CommandsChangeTheWorkingSettingsOnly) {
    board.receive(command({0x02, 7}));
    board.receive(command({0x03, 5}));
    board.receive(command({0x08, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255}));
    EXPECT_EQ(board.working()[0], 7);
    EXPECT_EQ(board.working()[1], 5);
    EXPECT_EQ(board.working()[22], 255);
    EXPECT_EQ(board.permanent()[0], 0);
    EXPECT_EQ(board.permanent()[1], 0);
    EXPECT_EQ(board.permanent()[22], 30);
}

TEST_F(ControllerTest, StoredSettingsAreTheWorkingOnes) {
    board.receive(RecordFrame);
    board.receive(command({0x01}));
    EXPECT_EQ(board.permanent(), SentRecord);
}

TEST_F(ControllerTest, EachPresetHasItsPalette) {
    const std::array<std::uint8_t, 6> entries[] = {
        // entry 1 and entry 15: red, green, blue
        {128, 0, 0, 255, 255, 255}, {17, 0, 0, 255, 0, 0},       {0, 17, 0, 0, 255, 0},
        {0, 0, 17, 0, 0, 255},      {17, 0, 17, 255, 0, 255},    {0, 17, 17, 0, 255, 255},
        {17, 17, 0, 255, 255, 0},   {17, 17, 17, 255, 255, 255}, {17, 9, 0, 255, 135, 0},
    };
    for (std::uint8_t index = 0; index < 9; ++index) {
        board.receive(command({0x03, index}));
        const Palette& palette = board.palette();
        for (std::size_t channel = 0; channel < 3; ++channel) {
            EXPECT_EQ(palette[channel], 0) << int{index};
            EXPECT_EQ(palette[3 + channel], entries[index][channel]) << int{index};
            EXPECT_EQ(palette[45 + channel], entries[index][3 + channel]) << int{index};
        }
    }
    board.receive(command({0x03, 0}));
    EXPECT_EQ(board.palette(), Vga);
}

TEST_F(ControllerTest, UnknownPresetLeavesThePalette) {
    for (const std::uint8_t index : Packet{9, 200, 255}) {
        board.receive(command({0x03, index}));
        EXPECT_EQ(board.palette(), Vga);
        EXPECT_EQ(board.working()[1], index);
    }
}

TEST_F(ControllerTest, LoadedPaletteIsStoredOnDemand) {
    Packet frame = command({0x04, 0, 1});
    std::fill_n(frame.begin() + 7, 48, std::uint8_t{0x5C});
    frame[55] = 0xEE;
    Palette loaded;
    loaded.fill(0x5C);
    board.receive(frame);
    EXPECT_EQ(board.palette(), loaded);
    EXPECT_EQ(board.permanentPalette(), Vga);
    board.receive(command({0x12}));
    EXPECT_EQ(board.permanentPalette(), loaded);
}

TEST_F(ControllerTest, WhatWasStoredLastComesBackWithARestart) {
    Packet own = command({0x04, 0, 1});
    std::fill_n(own.begin() + 7, 48, std::uint8_t{0x5C});
    const Packet orange = command({0x03, 8});
    const Packet vga = command({0x03, 0});
    const Packet store = command({0x01});
    const Packet storePalette = command({0x12});
    const struct {
        const char* name;
        std::vector<Packet> sent;
        std::uint8_t lastRed;  // Of entry 15: VGA is white, orange is 255, 135, 0.
        std::uint8_t lastGreen;
    } cases[] = {
        {"a preset, not stored", {orange}, 255, 255},
        {"a preset, stored", {orange, store}, 255, 135},
        {"loaded, not stored", {own, store}, 255, 255},
        {"loaded and stored", {vga, own, storePalette}, 0x5C, 0x5C},
        {"loaded and stored, then the settings", {vga, own, storePalette, store}, 0x5C, 0x5C},
        {"a preset over what was loaded", {own, storePalette, orange, store}, 255, 135},
        {"an unknown preset", {own, storePalette, command({0x03, 9}), store}, 0x5C, 0x5C},
    };
    for (const auto& each : cases) {
        Controller fresh;
        for (const Packet& packet : each.sent) {
            fresh.receive(packet);
        }
        fresh.receive(command({0x00}));
        EXPECT_EQ(fresh.palette()[45], each.lastRed) << each.name;
        EXPECT_EQ(fresh.palette()[46], each.lastGreen) << each.name;
    }
}

TEST_F(ControllerTest, PaletteFrameForAnotherPlaceIsIgnored) {
    board.receive(command({0x04, 1, 1, 9, 9, 9}));
    board.receive(command({0x04, 0, 0, 9, 9, 9}));
    EXPECT_EQ(board.palette(), Vga);
    EXPECT_EQ(board.ignoredPackets(), 2);
}

TEST_F(ControllerTest, ImageFrameIsKept) {
    Packet image = padded({0x81, 0xC3, 0xE7, 0x00, 0x7F}, 2052);
    image.back() = 0xAA;
    board.receive(image);
    EXPECT_EQ(board.image(), image);
}

TEST_F(ControllerTest, ResetBringsThePermanentSettingsBack) {
    board.receive(RecordFrame);
    board.receive(command({0x03, 4}));
    board.receive(command({0x10}));
    board.receive(command({0x00}));
    EXPECT_EQ(board.working(), board.permanent());
    EXPECT_EQ(board.palette(), Vga);
    EXPECT_EQ(board.takeReply(), std::nullopt);
}

TEST_F(ControllerTest, BoardIsSilentWhileItRestarts) {
    clock = 5000;
    board.receive(command({0x00}));
    clock = 5999;
    EXPECT_TRUE(board.restarting());
    board.receive(command({0x02, 9}));
    board.receive(command({0x10}));
    EXPECT_EQ(board.takeReply(), std::nullopt);
    EXPECT_EQ(board.working()[0], 0);
    clock = 6000;
    EXPECT_FALSE(board.restarting());
    board.receive(command({0x10}));
    EXPECT_TRUE(board.takeReply());
}

TEST_F(ControllerTest, NewRequestDropsTheUnreadReply) {
    board.receive(command({0x10}));
    board.receive(command({0x11}));
    EXPECT_EQ(board.takeReply().value()[0], '3');
    EXPECT_EQ(board.takeReply(), std::nullopt);
}

TEST_F(ControllerTest, WhatIsNoPacketOfTheProtocolIsCountedAndIgnored) {
    Packet shortFrame = command({0x02, 7});
    shortFrame.pop_back();
    Packet longFrame = command({0x02, 7});
    longFrame.push_back(0);
    Packet otherMark = command({0x02, 7});
    otherMark[3] = 0xFE;
    const Packet bad[] = {{},
                          {0x81},
                          shortFrame,
                          longFrame,
                          otherMark,
                          command({0x05}),
                          command({0xFF}),
                          padded({0x02, 0xC3, 0xE8, 4}, 63),
                          padded({0x02, 0xC3, 0xE8, 4}, 65),
                          padded({0x02, 0xC3, 0xE7, 4}, 64)};
    int ignored = 0;
    for (const Packet& packet : bad) {
        board.receive(packet);
        EXPECT_EQ(board.ignoredPackets(), ++ignored);
    }
    EXPECT_EQ(board.working()[0], 0);
    EXPECT_EQ(board.takeReply(), std::nullopt);
}

TEST_F(ControllerTest, RandomPacketsOfEverySizeAreSurvived) {
    std::mt19937 random(20261121);
    for (std::size_t size = 0; size <= 2100; ++size) {
        Packet packet(size);
        std::generate(packet.begin(), packet.end(),
                      [&] { return static_cast<std::uint8_t>(random()); });
        board.receive(packet);
    }
    EXPECT_GE(board.ignoredPackets(), 2099);
    board.receive(command({0x10}));
    EXPECT_EQ(board.takeReply().value().size(), 63U);
}

TEST_F(ControllerTest, FramesWithRandomOperandsAreSurvived) {
    std::mt19937 random(314);
    for (int round = 0; round < 5000; ++round) {
        Packet packet = command({});
        for (std::size_t i = 4; i < 16; ++i) {
            packet[i] = static_cast<std::uint8_t>(random());
        }
        packet[4] = static_cast<std::uint8_t>(packet[4] % 0x21);
        packet[5] = random() % 2 == 0 ? packet[5] : static_cast<std::uint8_t>(random() % 2);
        board.receive(packet);
        board.receive(packets::dumpRequest(static_cast<std::uint8_t>(random() % 16)));
        clock += 2000;
    }
    board.receive(command({0x10}));
    EXPECT_EQ(board.takeReply().value().size(), 63U);
}

TEST(ControllerWithoutAClock, StandsAtTimeZero) {
    ControllerOptions options;
    options.clock = nullptr;
    Controller board(options);
    board.receive(packets::dumpRequest(0));
    EXPECT_EQ(board.takeReply(), Packet({0, 0, 0, 0, 0}));
}
