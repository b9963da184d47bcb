// docs/file-formats.md

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <filesystem>

#include "device/dump_files.h"
#include "device/dump_format.h"
#include "device/settings_record.h"
#include "tests/device/pages/dots.h"
#include "tests/device/pages/sections.h"
#include "tests/support/page_examples.h"
#include "tests/support/temporary_folder.h"
#include "ui/palette.h"
#include "ui/palette_file.h"

/// The time at which the page's capture starts: 5 March 2024, 14:07:09 UTC.
extern "C" std::time_t __wrap_time(std::time_t* result) {
    constexpr std::time_t Start = 1709647629;
    if (result != nullptr) {
        *result = Start;
    }
    return Start;
}

namespace pages {

namespace {

const std::filesystem::path File = LUMADOT_DOCS "/file-formats.md";

std::vector<std::uint8_t> example(const std::string& name) {
    return support::pageExample(File, name);
}

// Settings file

void readSettingsFile(Page& page) {
    const auto lastMode = std::ranges::count_if(
        inputModes(), [](const InputModeInfo& mode) { return !mode.label.empty(); });
    page.expect(text(settings::RecordSize, " bytes: the settings record as it lies in memory."));
    page.expect(Table{
        "byte | content | range",
        text(offsetof(configDescriptor, inputMode), " | input mode | 0..", lastMode - 1),
        text(offsetof(configDescriptor, paletteIndex), " | palette preset | 0..",
             presets::Count - 1),
        text(range(offsetof(configDescriptor, deviceParam2),
                   offsetof(configDescriptor, deviceParam20)),
             " | parameters that only the controller understands, carried unchanged | "),
        text(offsetof(configDescriptor, enhancer), " | signal enhancer | 0, 1"),
        text(offsetof(configDescriptor, brightness), " | brightness | ", settings::MinBrightness,
             "..", settings::MaxBrightness, " from the slider"),
    });
}

/// "Palette 5 (Cyan)" as "Cyan".
std::string nameOfPreset(std::size_t number) {
    const std::string name(presets::Names.at(number));
    const auto open = name.find('(');
    return name.substr(open + 1, name.size() - open - 2);
}

void readSettingsExample(Page& page) {
    const auto record = settings::fromFile(example("settings-file"));
    ASSERT_TRUE(record.has_value());
    page.expect(text("Input mode ", int{record->inputMode}, " (",
                     inputMode(record->inputMode).label, "), preset ", int{record->paletteIndex},
                     " (", nameOfPreset(record->paletteIndex), "), enhancer ",
                     record->enhancer != 0 ? "on" : "off", ", brightness ", int{record->brightness},
                     ":"));
}

// Palette file

/// The shortest beginning of a palette file that is taken over.
std::size_t shortestTaken(std::span<const std::uint8_t> file) {
    std::size_t length = 0;
    while (length < file.size() && !palette_file::decode(file.first(length))) {
        ++length;
    }
    return length;
}

/// The first bytes with which a palette file is taken over.
std::vector<std::uint8_t> firstBytesTaken(palette_file::Bytes file) {
    std::vector<std::uint8_t> taken;
    for (int first = 0; first <= 255; ++first) {
        file[0] = static_cast<std::uint8_t>(first);
        if (palette_file::decode(file)) {
            taken.push_back(file[0]);
        }
    }
    return taken;
}

void readPaletteFile(Page& page) {
    const auto file = palette_file::encode(presets::colours(0));
    const std::size_t header = palette_file::HeaderSize;
    const std::string first = hexByte(file[0]);
    EXPECT_EQ(shortestTaken(file), palette_file::Size);
    EXPECT_EQ(hexBytes(firstBytesTaken(file)), first);
    page.expect(text(palette_file::Size, " bytes."));
    page.expect(Table{
        "byte | content | when loaded",
        text("0 | ", first, " | the file is used only if this is ", first),
        text(range(1, header - 1), " | ", hexBytes(std::span(file).subspan(1, header - 1)),
             " | not looked at"),
        text(range(header, palette_file::Size - 1), " | the palette: ", PaletteEntries,
             " entries of red, green, blue, entry 0 first | taken over"),
    });
    page.expect(text("A file with another first byte, or with fewer than ", palette_file::Size,
                     " bytes, changes nothing; what follows byte ", palette_file::Size - 1,
                     " is ignored."));
    page.expect(text("Preset 0, \"", nameOfPreset(0), "\":"));
}

// Dump files

/// The files of a capture in this mode, which starts now.
std::vector<std::string> filesOf(const InputModeInfo& mode) {
    const support::TemporaryFolder folder;
    const dump::Files files(folder.path().string(), mode);
    files.appendText({});
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

void readNames(Page& page) {
    std::string raw;
    std::string text;
    std::vector<int> rawModes;
    for (const InputModeInfo& mode : inputModes()) {
        const auto names = filesOf(mode);
        if (names.size() == 2) {
            rawModes.push_back(mode.number);
            raw = names[0];
        }
        text = names.back();
    }
    page.expect("A capture started on 5 March 2024 at 14:07:09 writes " + text + " " + raw +
                " modes " + listed(rawModes) + " only");
}

void readTimeStamp(Page& page) {
    page.expect(text("the files hold its low ", 8 * sizeof(dump::timeStamp({})), " bits."));
}

std::vector<std::string> linesOf(std::string_view block) {
    std::vector<std::string> lines;
    while (!block.empty()) {
        const auto end = block.find("\r\n");
        if (end == std::string_view::npos) {
            ADD_FAILURE() << "a line without an end";
            break;
        }
        lines.emplace_back(block.substr(0, end));
        block.remove_prefix(end + 2);
    }
    return lines;
}

void readTextDump(Page& page) {
    dump::TextEncoder standard(inputMode(InputMode::Stern).dots, dump::StandardDisplay);
    dump::TextEncoder xl(dump::XlDots, dump::XlDisplay);
    const auto lines = linesOf(standard.encode(0, {}));
    const auto xlLines = linesOf(xl.encode(0, {}));
    EXPECT_EQ(lines.back(), "");
    EXPECT_TRUE(lines[0].starts_with("0x"));
    page.expect("Lines end with CR LF (0D 0A).");
    page.expect(Table{
        "line | content",
        text("1 | the time stamp, `0x` and ", lines[0].size() - 2, " hexadecimal digits"),
        text(range(2, lines.size() - 1), " | a row of ", lines[1].size(),
             " dots, a hexadecimal digit each; on the XL controller ", xlLines.size() - 2,
             " rows of ", xlLines[1].size(), " dots"),
        "last | empty",
    });
}

std::string stampIn(const std::vector<std::uint8_t>& reply) {
    return hex(dump::timeStamp(reply), 8);
}

/// What the page says of its example is what the code makes of it.
void readTextExample(Page& page) {
    const auto reply = example("text-dump-reply");
    const InputModeInfo& mode = inputMode(InputMode::WhiteStar);
    const auto planes = std::span(reply).subspan(dump::PlanesOffset);
    dump::TextEncoder encoder(mode.dots, dump::StandardDisplay);
    const auto row = linesOf(encoder.encode(0, planes))[1];
    page.expect(text(
        "A frame of ", mode.label, " (", int{mode.capturePlanes}, " planes) with time stamp ",
        stampIn(reply), ". In the top row the first plane's bytes are ", hexBytes(planes.first(2)),
        " and the second's ", hexBytes(planes.subspan(dump::StandardDisplay.planeBytes(), 2)),
        ", so that the leftmost dots are ", row[0], ", ", row[1], ", ", row[2], ", ", row[3],
        " and the 16th is ", row[15], "."));
}

void readRawDump(Page& page) {
    constexpr std::uint8_t Planes = 77;
    const auto header = dump::rawHeader(Planes);
    const auto stamp = dump::rawBlock(0, 0, {}).size();
    const auto plane = dump::rawBlock(0, 1, {}).size() - stamp;
    EXPECT_EQ(header[7], Planes);
    page.expect(Table{
        "offset | size | content",
        text("0 | 3 | ", hexBytes(std::span(header).first<3>()), " (\"", header[0], header[1],
             header[2], "\")"),
        text("3 | 1 | ", hexByte(header[3])),
        text("4 | 1 | ", hexByte(header[4])),
        text("5 | 1 | ", hexByte(header[5]), ": ", int{header[5]}, " dots wide"),
        text("6 | 1 | ", hexByte(header[6]), ": ", int{header[6]}, " dots high"),
        "7 | 1 | planes of a frame",
        text(header.size(), ".. | a frame | ", stamp,
             " bytes time stamp, least significant first; then planes x ", plane,
             " bytes as the controller sent them, plane 0 first, least significant bit leftmost"),
    });
    page.expect(text("a frame holds the first planes x ", plane, " bytes of what it sent,"));
}

void readRawExample(Page& page) {
    const InputModeInfo& mode = inputMode(InputMode::WPC);
    page.expect(text("A frame of ", mode.label, " (", int{mode.capturePlanes},
                     " planes) with time stamp ", stampIn(example("raw-dump-reply")), ","));
}

}  // namespace

const std::vector<Section>& fileSections() {
    static const std::vector<Section> all = {
        {"SettingsFile", readSettingsFile}, {"SettingsExample", readSettingsExample},
        {"PaletteFile", readPaletteFile},   {"Names", readNames},
        {"TimeStamp", readTimeStamp},       {"TextDump", readTextDump},
        {"TextExample", readTextExample},   {"RawDump", readRawDump},
        {"RawExample", readRawExample},
    };
    return all;
}

}  // namespace pages
