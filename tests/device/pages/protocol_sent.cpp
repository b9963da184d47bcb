// docs/protocol.md: the connection and what the tool sends.

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cctype>

#include "device/dump_format.h"
#include "device/frames.h"
#include "device/input_mode.h"
#include "device/settings_record.h"
#include "device/unique_id.h"
#include "device/upload.h"
#include "device/variant.h"
#include "device/wire.h"
#include "tests/device/pages/dots.h"
#include "tests/device/pages/sections.h"
#include "tests/support/page_examples.h"
#include "ui/palette.h"

namespace pages {

namespace {

const std::filesystem::path File = LUMADOT_DOCS "/protocol.md";

std::string codeOf(Command command) { return hexByte(static_cast<std::uint8_t>(command)); }

/// Where two frames differ: the operands that a builder sets.
std::vector<std::size_t> differences(const CommandFrame& one, const CommandFrame& other) {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < frame::Size; ++i) {
        if (one.bytes()[i] != other.bytes()[i]) {
            found.push_back(i);
        }
    }
    return found;
}

std::string rangeOf(const std::vector<std::size_t>& places) {
    EXPECT_EQ(places.back() - places.front() + 1, places.size());
    return range(places.front(), places.back());
}

/// The page's text about the brightness: where the level stands, and the levels that are sent.
struct Levels {
    std::size_t at = differences(frames::brightness(100), frames::brightness(200)).at(0);
    int lowest = frames::brightness(-1000).bytes()[at];
    int highest = frames::brightness(1000).bytes()[at];
};

// Connection

void readConnection(Page& page) {
    EXPECT_EQ(variant::named("LUMADOT"), variant::Standard);
    EXPECT_EQ(variant::named("LUMADOT XL"), variant::Xl);
    page.expect(Table{
        "what | value",
        text("vendor, product | ", hex(wire::VendorId, 4), ", ", hex(wire::ProductId, 4)),
        text("product string | \"LUMADOT\" (", dotsOf(dump::StandardDisplay),
             " dots) or \"LUMADOT XL\" (", dotsOf(dump::XlDisplay), " dots)"),
        text("interface | ", wire::Interface),
        text("out endpoint | ", hex(wire::EndpointOut, 2), ", bulk"),
        text("in endpoint | ", hex(wire::EndpointIn, 2), ", bulk"),
    });
    page.expect(text("claim interface ", wire::Interface, ";"));
}

// Frames

void readFrames(Page& page) {
    const auto command = frame::blank(frame::Kind::Command);
    const auto image = frame::blank(frame::Kind::Image);
    const auto planeBytes = dump::StandardDisplay.planeBytes();
    const auto planes = (frame::Size - frame::Content) / planeBytes;
    page.expect(text("A **command frame** is ", frame::Size,
                     " bytes, always sent whole, with a timeout of ", wire::Timeout, " ms:"));
    page.expect(Table{
        "bytes | content",
        text("0..", frame::Content - 1, " | ", hexBytes(std::span(command).first<4>())),
        text(CommandFrame::Code, " | command code"),
        text(CommandFrame::FirstOperand, "..", frame::Size - 1,
             " | operands, 00 unless the command sets them"),
    });
    page.expect(text("An **image frame** has the same size and starts ",
                     hexBytes(std::span(image).first<4>()), ". Bytes ", frame::Content, "..",
                     frame::Size - 1, " are ", dotsOf(dump::StandardDisplay), " dots at ", planes,
                     " bits a dot: ", inWords(planes), " bit planes of ", planeBytes,
                     " bytes, least significant first; a plane is ", dump::StandardDisplay.rows,
                     " rows of ", dump::StandardDisplay.rowBytes, " bytes; "));
    page.expect("the leftmost of its 8 dots.");
}

struct CommandText {
    Command command;
    std::string name, operands, reply;
};

std::string byteOf(Command command, const char* operand) {
    return text("byte ",
                rangeOf(differences(frames::command(command), frames::command(command, 9))), ": ",
                operand);
}

std::string paletteOperands() {
    std::array<std::uint8_t, PaletteSize> ones{};
    ones.fill(1);
    const auto zeros = frames::palette(std::array<std::uint8_t, PaletteSize>{});
    const auto entries = differences(zeros, frames::palette(ones));
    std::string operands;
    for (std::size_t i = CommandFrame::FirstOperand; i < entries.front(); ++i) {
        operands += text("byte ", i, ": ", hexByte(zeros.bytes()[i]), ", ");
    }
    return operands + "bytes " + rangeOf(entries) + ": the palette";
}

std::string settingsOperands() {
    std::array<std::uint8_t, settings::RecordSize> bytes{};
    const auto zeros = frames::settings(settings::fromBytes(bytes));
    bytes.fill(1);
    const auto ones = frames::settings(settings::fromBytes(bytes));
    return "bytes " + rangeOf(differences(zeros, ones)) + ": the record";
}

std::string brightnessOperands() {
    const Levels levels;
    return text("byte ", levels.at, ": ", levels.lowest, "..", levels.highest);
}

std::string phaseOperand() {
    CommandFrame open(Command::Upload);
    CommandFrame close(Command::Upload);
    frames::uploadClose(close);
    return "byte " + rangeOf(differences(open, close)) + ": phase, then what it needs";
}

/// As the page has it. A command that is new has to be added here, or the compiler complains.
CommandText textOf(Command command) {
    switch (command) {
        case Command::Reset:
            return {command, "reset", "", "none; the controller restarts"};
        case Command::Store:
            return {command, "store the working settings", "", "none"};
        case Command::SelectMode:
            return {command, "select the input mode", byteOf(command, "mode"), "none"};
        case Command::SelectPreset:
            return {command, "select a palette preset", byteOf(command, "preset"), "none"};
        case Command::LoadPalette:
            return {command, "load the palette", paletteOperands(), "none"};
        case Command::Brightness:
            return {command, "set the brightness", brightnessOperands(), "none"};
        case Command::Upload:
            return {command, "upload a file", phaseOperand(),
                    text(upload::AnswerLength, " byte a frame")};
        case Command::ReadSettings:
            return {command, "read the settings", "", text(settings::ReplyLength, " bytes")};
        case Command::ReadUniqueId:
            return {command, "read the unique id", "",
                    text("up to ", unique_id::ReplyLength, " bytes")};
        case Command::StorePalette:
            return {command, "store the palette", "", "none"};
        case Command::WriteSettings:
            return {command, "write the settings", settingsOperands(), "none"};
    }
    return {};
}

const std::vector<Command> Commands = {
    Command::Reset,        Command::Store,        Command::SelectMode,   Command::SelectPreset,
    Command::LoadPalette,  Command::Brightness,   Command::Upload,       Command::ReadSettings,
    Command::ReadUniqueId, Command::StorePalette, Command::WriteSettings};

/// The table of the commands, and the heading that each has.
void readCommands(Page& page) {
    Table table = {"code | command | operands | reply"};
    for (const Command command : Commands) {
        CommandText row = textOf(command);
        table.push_back(
            text(codeOf(command), " | ", row.name, " | ", row.operands, " | ", row.reply));
        row.name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(row.name[0])));
        page.expect(text("## ", codeOf(command), " ", row.name, " "));
    }
    page.expect(table);
}

// The commands

void readPauses(Page& page) {
    page.expect(text("The tool waits ", wire::RestartPause, " ms, then reads the settings."));
    page.expect(text("Sent ", wire::StorePause, " ms after the settings have been written (",
                     codeOf(Command::WriteSettings), ")."));
}

/// As the page calls the mode: with its label, but for the one that is not a machine's.
std::string systemOf(std::size_t mode) {
    const std::string label(inputModes()[mode].label);
    return label == "USB port" ? "PinMame, over USB" : label;
}

void readModes(Page& page) {
    constexpr std::size_t Rows = 8;
    Table table = {"mode | system | mode | system"};
    for (std::size_t left = 0; left < Rows; ++left) {
        const std::size_t right = left + Rows;
        table.push_back(text(left, " | ", systemOf(left), " | ", right, " | ", systemOf(right)));
        EXPECT_EQ(inputModes()[left].number, left);
        EXPECT_EQ(inputModes()[right].number, right);
    }
    EXPECT_EQ(inputModes()[2 * Rows].label, "") << "a mode that the table has not";
    page.expect(table);
}

/// "Palette 8 (Orange)" as the page has it.
std::string presetText(std::size_t number) {
    const std::string name(presets::Names.at(number));
    const auto open = name.find('(');
    return text("Preset ", number, ", \"", name.substr(open + 1, name.size() - open - 2), "\"");
}

void readPalettes(Page& page) {
    std::string entries = inWords(PaletteEntries);
    entries[0] = 'S';
    page.expect(presetText(presets::Count - 1) + ".");
    page.expect(entries + " entries of red, green, blue; always all of them. " + presetText(0) +
                ":");
    page.expect(text("sends ", codeOf(Command::SelectPreset), " with preset 0, ",
                     codeOf(Command::LoadPalette), ", and ", codeOf(Command::StorePalette),
                     ", without a pause."));
}

void readBrightness(Page& page) {
    const Levels levels;
    page.expect(text("The level stands in byte ", levels.at, " and is never below ", levels.lowest,
                     ". The tool waits ", wire::BrightnessPause,
                     " ms after each of these frames. Level ",
                     int{support::pageExample(File, "brightness").at(levels.at)}, ":"));
}

// 0A Upload a file

std::string refusals() {
    std::vector<std::uint8_t> refused;
    for (int answer = 0; answer <= 255; ++answer) {
        if (!upload::accepts(static_cast<std::uint8_t>(answer))) {
            refused.push_back(static_cast<std::uint8_t>(answer));
        }
    }
    return hexBytes(refused);
}

void readUpload(Page& page) {
    const std::vector<std::uint8_t> block(frames::UploadBlockSize, 0xEE);
    CommandFrame open(Command::Upload);
    CommandFrame data(Command::Upload);
    CommandFrame close(Command::Upload);
    frames::uploadOpen(open, "n");
    frames::uploadData(data, block);
    frames::uploadClose(close);
    const auto phase = CommandFrame::FirstOperand;
    const auto at = [](const CommandFrame& sent, std::uint8_t byte) {
        return std::ranges::find(sent.bytes(), byte) - sent.bytes().begin();
    };
    EXPECT_EQ(data.bytes()[phase + 1] * 256U + data.bytes()[phase + 2], block.size());
    page.expect(text("After every frame the controller answers with ",
                     inWords(upload::AnswerLength), " byte (read with ", wire::Timeout,
                     " ms): ", refusals(), " refuses, anything else accepts."));
    page.expect(Table{
        text("phase (byte ", phase, ") | from byte ", at(open, 'n'), " | sent"),
        text(hexByte(open.bytes()[phase]),
             " open | the destination name, without a terminating zero | once"),
        text(hexByte(data.bytes()[phase]), " data | block length, high byte first (0..",
             block.size(), "), then the block from byte ", at(data, 0xEE), " | for every ",
             block.size(), " bytes, then once for the rest, even if there is none"),
        text(hexByte(close.bytes()[phase]), " close |  | once"),
    });
}

}  // namespace

const std::vector<Section>& sentSections() {
    static const std::vector<Section> all = {
        {"Connection", readConnection}, {"Frames", readFrames}, {"Commands", readCommands},
        {"Pauses", readPauses},         {"Modes", readModes},   {"Palettes", readPalettes},
        {"Brightness", readBrightness}, {"Upload", readUpload},
    };
    return all;
}

}  // namespace pages
