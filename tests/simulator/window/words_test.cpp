// The controller and its commands in words.

#include <gmock/gmock.h>

#include "simulator/window/words.h"
#include "tests/simulator/packets.h"

namespace {

using packets::command;
using simulator::CommandList;
using simulator::Controller;
using simulator::inWords;
using simulator::Packet;
using simulator::Row;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint8_t Out = 0x01;
constexpr std::uint8_t In = 0x81;

Packet brightness(std::uint8_t value) {
    return command({0x08, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, value});
}

TEST(Words, ACommandIsToldByWhatItDoes) {
    struct Case {
        Packet packet;
        const char* words;
    };
    const Case cases[] = {
        {command({0x00}), "Restart"},
        {command({0x01}), "Keep the settings"},
        {command({0x02, 1}), "Input mode Bally/Williams"},
        {command({0x02, 15}), "Input mode HomePin"},
        {command({0x02, 239}), "Input mode Unknown, number 239"},
        {command({0x03, 1}), "Palette 1 (Red)"},
        {command({0x03, 9}), "Palette 9 (unknown)"},
        {command({0x04, 0, 1}), "Custom palette"},
        {brightness(33), "Brightness 33"},
        {command({0x0A, 0, 'a', '"', 0xE9, '\n'}), "Open the file \"a\"\\xE9\\x0A\""},
        {command({0x0A, 1, 2, 0}), "512 bytes of the file"},
        {command({0x0A, 1, 0, 1}), "1 byte of the file"},
        {command({0x0A, 0xFF}), "Close the file"},
        {command({0x0A, 7}), "Upload frame of an unknown kind"},
        {command({0x10}), "Tell the settings"},
        {command({0x11}), "Tell the unique id"},
        {command({0x12}), "Keep the palette"},
        {command({0x20, 9, 8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 200}),
         "Use the settings Capcom, Palette 8 (Orange), brightness 200, enhancer On"},
        {command({0x77}), "Unknown command, number 119"},
        {packets::image(), "Picture"},
        {packets::dumpRequest(12), "Capture a frame, 12 planes"},
        {packets::dumpRequest(1), "Capture a frame, 1 plane"},
        {Packet{0x81, 0xC3, 0xE7, 0xFF}, "Not understood, 4 bytes"},
        {Packet{}, "Not understood, 0 bytes"},
    };
    for (const auto& [packet, words] : cases) {
        EXPECT_EQ(inWords({.endpoint = Out, .data = packet}), words);
    }
}

TEST(Words, RepliesAreToldOnlyWhenTheyFail) {
    EXPECT_EQ(inWords({.endpoint = In, .data = {1}}), std::nullopt);
    EXPECT_EQ(inWords({.endpoint = In, .error = "stall"}), "Reply failed: stall");
    EXPECT_EQ(inWords({.endpoint = Out, .error = "unlinked"}), "Transfer failed: unlinked");
}

TEST(Words, TheNewestCommandIsFirstAndEqualOnesAreCounted) {
    CommandList list;
    EXPECT_THAT(list.rows(), IsEmpty());
    list.add({.endpoint = Out, .data = command({0x10})});
    for (int i = 0; i < 3; ++i) {
        list.add({.endpoint = Out, .data = packets::dumpRequest(4)});
        list.add({.endpoint = In, .data = {0}});
    }
    EXPECT_THAT(list.rows(), ElementsAre(Row{"Capture a frame, 4 planes", "3 times"},
                                         Row{"Tell the settings", ""}));
}

TEST(Words, TheListOfCommandsHasAnEnd) {
    CommandList list;
    for (unsigned i = 0; i <= CommandList::Most; ++i) {
        list.add({.endpoint = Out, .data = brightness(static_cast<std::uint8_t>(i))});
    }
    EXPECT_THAT(list.rows(), SizeIs(100));
    EXPECT_THAT(list.rows().front(), ElementsAre("Brightness 100", ""));
    EXPECT_THAT(list.rows().back(), ElementsAre("Brightness 1", ""));
}

TEST(Words, SettingsInUseStandBesideThoseThatAreKept) {
    Controller controller;
    controller.receive(command({0x02, 10}));
    controller.receive(command({0x03, 3}));
    controller.receive(brightness(200));
    EXPECT_THAT(settingsInWords(controller),
                ElementsAre(Row{"Input mode", "Alvin G", "USB port"},
                            Row{"Palette", "Palette 3 (Blue)", "Palette 0 (VGA)"},
                            Row{"Brightness", "200", "30"}, Row{"Signal Enhancer", "On", "On"},
                            Row{"Other settings", "15 10 15 12 15 0 15 15 0 0 0 0 0 0 0 0 0 0 1",
                                "15 10 15 12 15 0 15 15 0 0 0 0 0 0 0 0 0 0 1"}));
}

TEST(Words, APaletteOfOnesOwnIsCustom) {
    Controller controller;
    controller.receive(command({0x04, 0, 1, 1, 2, 3}));
    EXPECT_THAT(settingsInWords(controller)[1],
                ElementsAre("Palette", "Custom", "Palette 0 (VGA)"));
    controller.receive(command({0x12}));
    EXPECT_THAT(settingsInWords(controller)[1], ElementsAre("Palette", "Custom", "Custom"));
}

TEST(Words, FilesHaveTheirNamesAndSizes) {
    Controller controller;
    controller.receive(command({0x0A, 0, 'b', 0x07}));
    controller.receive(command({0x0A, 1, 0, 1, 'x'}));
    controller.receive(command({0x0A, 0xFF}));
    controller.receive(command({0x0A, 0, 'a'}));
    controller.receive(command({0x0A, 0xFF}));
    EXPECT_THAT(filesInWords(controller),
                ElementsAre(Row{"a", "0 bytes"}, Row{"b\\x07", "1 byte"}));
}

}  // namespace
