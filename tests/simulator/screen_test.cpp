// What the display shows, dot by dot.

#include <gmock/gmock.h>

#include <numeric>
#include <set>

#include "simulator/screen.h"
#include "tests/simulator/packets.h"

namespace {

using packets::command;
using packets::image;
using simulator::Board;
using simulator::Controller;
using simulator::DotCount;
using simulator::Packet;
using simulator::Shown;

std::uint8_t entryAt(const Shown& picture, std::size_t column, std::size_t row) {
    return picture.entries.at(row * picture.size.columns + column);
}

TEST(Screen, ShowsTheMachineInTheShadesOfTheInputMode) {
    struct Case {
        std::uint8_t mode;
        std::set<int> entries;
    };
    const std::set<int> four = {0, 1, 4, 15};
    const std::set<int> five = {0, 3, 7, 11, 15};
    const std::set<int> all = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
    const Case cases[] = {{0, all},   {1, four},  {2, all},   {3, four}, {4, all},   {5, four},
                          {6, five},  {7, four},  {8, four},  {9, four}, {10, five}, {11, all},
                          {12, four}, {13, four}, {14, four}, {15, all}, {239, all}};
    for (const Board board : {Board::Standard, Board::Xl}) {
        Controller controller({.board = board});
        for (const auto& [mode, entries] : cases) {
            controller.receive(command({0x02, mode}));
            const auto picture = shown(controller, 0);
            EXPECT_EQ(std::set<int>(picture.entries.begin(), picture.entries.end()), entries)
                << "mode " << int{mode};
        }
    }
}

TEST(Screen, HasTheDotsOfTheBoard) {
    EXPECT_EQ(shown(Controller(), 0).size, (DotCount{128, 32}));
    EXPECT_EQ(shown(Controller(), 0).entries.size(), 4096U);
    EXPECT_EQ(shown(Controller({.board = Board::Xl}), 0).size, (DotCount{192, 64}));
    EXPECT_EQ(shown(Controller({.board = Board::Xl}), 0).entries.size(), 12288U);
}

TEST(Screen, MachinePlaysOnFromStepToStep) {
    const Controller controller;
    EXPECT_NE(shown(controller, 1), shown(controller, 0));
    EXPECT_EQ(shown(controller, 64), shown(controller, 0));
}

// Of four planes: a dot is as bright as its planes, lowest first, say.
TEST(Screen, ShowsTheFrameThatIsCaptured) {
    Controller controller;
    controller.receive(command({0x02, 2}));
    const Packet planes = controller.capturedPlanes(5, 4);
    const auto picture = shown(controller, 5);
    for (std::size_t dot = 0; dot < 4096; ++dot) {
        int entry = 0;
        for (std::size_t plane = 0; plane < 4; ++plane) {
            entry += (planes[plane * 512 + dot / 8] >> dot % 8 & 1) << plane;
        }
        ASSERT_EQ(picture.entries[dot], entry) << "dot " << dot;
    }
}

TEST(Screen, ShowsAnImageWithItsHighestBitLeftmost) {
    Controller controller;
    controller.receive(image());
    const auto picture = shown(controller, 0);
    EXPECT_EQ(entryAt(picture, 0, 0), 9);
    EXPECT_EQ(entryAt(picture, 10, 7), 4);
    EXPECT_EQ(entryAt(picture, 127, 31), 2);
    EXPECT_EQ(std::accumulate(picture.entries.begin(), picture.entries.end(), 0), 9 + 4 + 2);
}

TEST(Screen, ShowsAnImageInTheMiddleOfTheLargerBoard) {
    Controller controller({.board = Board::Xl});
    controller.receive(image());
    const auto picture = shown(controller, 0);
    EXPECT_EQ(entryAt(picture, 32, 16), 9);
    EXPECT_EQ(entryAt(picture, 42, 23), 4);
    EXPECT_EQ(entryAt(picture, 159, 47), 2);
    EXPECT_EQ(std::accumulate(picture.entries.begin(), picture.entries.end(), 0), 9 + 4 + 2);
}

TEST(Screen, ImageStaysUntilSomethingElseIsToBeShown) {
    const auto shownAfter = [](const Packet& packet) {
        Controller controller;
        controller.receive(image());
        controller.receive(packet);
        return entryAt(shown(controller, 0), 10, 7) == 4;
    };
    EXPECT_TRUE(shownAfter(command({0x03, 1})));
    EXPECT_TRUE(shownAfter(command({0x10})));
    EXPECT_FALSE(shownAfter(command({0x02, 0})));
    EXPECT_FALSE(shownAfter(command({0x20})));
    EXPECT_FALSE(shownAfter(command({0x00})));
}

TEST(Screen, HasThePaletteAndTheBrightnessInUse) {
    Controller controller;
    controller.receive(command({0x03, 8}));
    controller.receive(command({0x08, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 77}));
    const auto picture = shown(controller, 0);
    EXPECT_EQ(picture.brightness, 77);
    EXPECT_EQ(picture.palette[45], 255);
    EXPECT_EQ(picture.palette[46], 135);
    EXPECT_EQ(picture.palette[47], 0);
}

TEST(Screen, IsDarkWhileTheBoardRestarts) {
    std::uint64_t now = 5000;
    Controller controller({.restartTime = 1000, .clock = [&now] { return now; }});
    controller.receive(command({0x00}));
    EXPECT_EQ(shown(controller, 0).brightness, 0);
    now += 999;
    EXPECT_EQ(shown(controller, 0).brightness, 0);
    now += 1;
    EXPECT_EQ(shown(controller, 0).brightness, 30);
}

}  // namespace
