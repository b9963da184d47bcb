#include <gmock/gmock.h>

#include <fstream>
#include <string>
#include <vector>

#include "device/input_mode.h"
#include "ui/palette.h"

namespace {

using Row = std::vector<std::string>;

std::vector<std::string> split(const std::string& text, const std::string& separator) {
    std::vector<std::string> parts;
    std::size_t from = 0;
    for (std::size_t end = 0; (end = text.find(separator, from)) != std::string::npos;) {
        parts.push_back(text.substr(from, end - from));
        from = end + separator.size();
    }
    parts.push_back(text.substr(from));
    return parts;
}

/// The rows of the table of the user's guide that has this first line, without their outer bars.
std::vector<Row> table(const std::string& firstLine) {
    std::ifstream page(LUMADOT_DOCS "/user-guide.md");
    std::string line;
    while (std::getline(page, line) && line != firstLine) {
    }
    std::getline(page, line);  // The line under the headings.
    std::vector<Row> rows;
    while (std::getline(page, line) && line.starts_with("| ")) {
        const std::size_t end = line.find_last_not_of(" |");
        rows.push_back(split(line.substr(2, end - 1), " | "));
    }
    return rows;
}

/// The modes that the window has a button for, in the order of their numbers.
std::vector<InputModeInfo> shownModes() {
    std::vector<InputModeInfo> modes(inputModes().begin(), inputModes().end());
    std::erase_if(modes, [](const InputModeInfo& mode) { return mode.number > 15; });
    return modes;
}

std::vector<std::string> modesWith(ShadeSet shades) {
    std::vector<std::string> labels;
    for (const InputModeInfo& mode : shownModes()) {
        if (mode.shades == shades) {
            labels.emplace_back(mode.label);
        }
    }
    return labels;
}

std::vector<std::string> entriesOf(ShadeSet shades) {
    std::vector<std::string> entries;
    for (std::size_t entry = 0; entry < 16; ++entry) {
        if (isShown(shades, entry)) {
            entries.push_back(std::to_string(entry));
        }
    }
    return entries;
}

/// Modes, number of shades and entries of a row.
void expectRow(const Row& row, ShadeSet shades, const std::string& count) {
    EXPECT_THAT(split(row.at(0), ", "), testing::UnorderedElementsAreArray(modesWith(shades)));
    EXPECT_EQ(row.at(1), count);
    if (shades != ShadeSet::Sixteen) {
        EXPECT_EQ(split(row.at(2), ", "), entriesOf(shades));
    }
}

TEST(UserGuide, TellsOfEveryModeOnWhichMachinesItGoes) {
    std::vector<std::string> told;
    for (const Row& row : table("| mode | machines | about |")) {
        const std::vector<std::string> labels = split(row.at(0), ", ");
        told.insert(told.end(), labels.begin(), labels.end());
    }
    std::vector<std::string> wanted = {"Sega192x64"};  // The other caption of mode 1.
    for (const InputModeInfo& mode : shownModes()) {
        wanted.emplace_back(mode.label);
    }
    EXPECT_THAT(told, testing::UnorderedElementsAreArray(wanted));
}

TEST(UserGuide, TellsTheColoursOfEachModesShades) {
    const auto rows = table("| mode | shades | colours, from dark to bright |");
    ASSERT_EQ(rows.size(), 3);
    expectRow(rows[0], ShadeSet::Four, "4");
    expectRow(rows[1], ShadeSet::Five, "5");
    expectRow(rows[2], ShadeSet::Sixteen, "16");
    EXPECT_EQ(rows[2].at(2), "0 to 15");
}

}  // namespace
