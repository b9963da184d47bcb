// docs/protocol.md: what the controller answers, and the frame dumps.

#include <gmock/gmock.h>

#include <algorithm>
#include <array>

#include "device/dump_format.h"
#include "device/frames.h"
#include "device/input_mode.h"
#include "device/settings_record.h"
#include "device/unique_id.h"
#include "device/wire.h"
#include "tests/device/pages/dots.h"
#include "tests/device/pages/sections.h"
#include "tests/support/page_examples.h"

namespace pages {

namespace {

const std::filesystem::path File = LUMADOT_DOCS "/protocol.md";

// 10 Read the settings, 11 Read the unique id

configDescriptor blankRecord() {
    return settings::fromBytes(std::array<std::uint8_t, settings::RecordSize>{});
}

/// Where the bytes of a reply go, which has another value in each.
struct Layout {
    explicit Layout(std::uint8_t mark) {
        settings::Reply reply{};
        for (std::size_t i = 0; i < reply.size(); ++i) {
            reply[i] = static_cast<std::uint8_t>(i + 100);
        }
        reply[MarkAt] = mark;
        std::array<char, settings::VersionLength> text{};
        configDescriptor taken = blankRecord();
        settings::applyReply(reply, taken, text.data());
        record = settings::bytesOf(taken);
        version = text[1] - 100 - 1;
    }
    static std::size_t from(std::uint8_t byte) { return byte - 100U; }

    static constexpr std::size_t MarkAt = 4;
    std::array<std::uint8_t, settings::RecordSize> record{};
    int version = 0;  ///< where its text begins
};

std::uint8_t newerMark() {
    int found = -1;
    for (int mark = 0; mark <= 255; ++mark) {
        const Layout layout(static_cast<std::uint8_t>(mark));
        if (layout.version >= 0) {
            EXPECT_EQ(found, -1) << "more than one";
            found = mark;
        }
    }
    return static_cast<std::uint8_t>(found);
}

void readSettingsReply(Page& page) {
    const std::uint8_t mark = newerMark();
    const Layout newer(mark);
    const Layout older(0);
    const std::size_t version = static_cast<std::size_t>(newer.version);
    const std::size_t record = Layout::from(newer.record[0]);
    const std::size_t last = Layout::from(newer.record.back());
    EXPECT_EQ(record, version + settings::VersionLength);
    page.expect(text("The reply is read with a length of ", settings::ReplyLength, " and ",
                     wire::Timeout, " ms. Byte ", Layout::MarkAt, " tells the layout:"));
    page.expect(Table{
        text("newer firmware, byte ", Layout::MarkAt, " is ", hexByte(mark), " (\"", mark,
             "\") |  | older firmware | "),
        text(range(0, version - 1), " | not used | ", Layout::from(older.record[0]),
             " | input mode"),
        text(range(version, record - 1), " | firmware version, ", settings::VersionLength,
             " characters from \"", mark, "\" on | ", Layout::from(older.record[22]),
             " | brightness"),
        text(range(record, last), " | the settings record | ", Layout::from(older.record[21]),
             " | signal enhancer"),
        text(range(last + 1, settings::ReplyLength - 1), " | not used | ",
             Layout::from(older.record[1]), " | palette preset"),
    });
}

/// What the page says of its example is what the code reads in it.
void readSettingsExample(Page& page) {
    const auto example = support::pageExample(File, "settings-reply");
    settings::Reply reply{};
    ASSERT_EQ(example.size(), static_cast<std::size_t>(settings::ReplyLength));
    std::ranges::copy(example, reply.begin());
    std::array<char, settings::VersionLength + 1> version{};
    configDescriptor read = blankRecord();
    settings::applyReply(reply, read, version.data());
    page.expect(text("Newer, version \"", version.data(), "\", input mode ", int{read.inputMode},
                     ", preset ", int{read.paletteIndex}, ", brightness ", int{read.brightness},
                     ":"));
}

void readUniqueId(Page& page) {
    std::string letters;
    for (int letter = 0; letter <= 255; ++letter) {
        if (unique_id::isLargeBoard(static_cast<char>(letter))) {
            letters += static_cast<char>(letter);
        }
    }
    EXPECT_EQ(letters, "GSX");
    page.expect(text("The reply, at most ", unique_id::ReplyLength,
                     " bytes, is the id as text up to the first zero byte. \"",
                     unique_id::text(support::pageExample(File, "unique-id-reply")), "\":"));
    page.expect("A first letter X, S or G means a board that drives the large display:");
    page.expect("it has mode 1 only, captioned \"Sega192x64\".");  // Seen in the window only.
}

void readRecord(Page& page) {
    constexpr std::size_t Shown = 4;
    page.expect(text("The ", settings::RecordSize, " bytes of the settings record from byte ",
                     CommandFrame::FirstOperand, " on: input mode, palette preset, ",
                     inWords(settings::RecordSize - Shown),
                     " bytes that only the controller understands, signal enhancer (0, 1), "
                     "brightness."));
}

// Frame dumps

void readDumpRequest(Page& page) {
    const InputModeInfo& stern = inputMode(InputMode::Stern);
    page.expect(text("It is ", sizeof(dump::Request), " bytes (", wire::DumpRequestTimeout,
                     " ms) with the number of bit planes that the input mode has, ",
                     int{dump::XlPlanes}, " on the XL controller. For ", stern.label, ", ",
                     int{stern.capturePlanes}, " planes:"));
}

void readDumpReply(Page& page) {
    const auto planeBytes = dump::StandardDisplay.planeBytes();
    const auto more = dump::replyLength(0, dump::StandardDisplay);
    EXPECT_EQ(dump::replyLength(7, dump::StandardDisplay), 7 * planeBytes + more);
    page.expect(text("The reply is read with ", wire::DumpReplyTimeout,
                     " ms and a length of planes x ", planeBytes, " + ", more, ", or ",
                     dump::replyLength(dump::XlPlanes, dump::XlDisplay), " on the XL controller:"));
    page.expect(Table{
        "bytes | content",
        text(range(0, dump::PlanesOffset - 1),
             " | the controller's time stamp in ms, least significant byte first"),
        text(dump::PlanesOffset, ".. | the planes, plane 0 first: ", rowsOf(dump::StandardDisplay),
             " each, on the XL controller ", rowsOf(dump::XlDisplay)),
        text("last | ", inWords(more - dump::PlanesOffset), " byte more"),
    });
}

/// A row of the page for all modes whose captures are alike, in the order of their first ones.
void readDots(Page& page) {
    using Kind = std::pair<int, std::string>;
    std::vector<std::pair<Kind, std::vector<int>>> rows;
    for (const InputModeInfo& mode : inputModes().subspan(1)) {
        const Kind kind(mode.capturePlanes, ruleText(mode.dots, mode.capturePlanes));
        const auto known = std::ranges::find(rows, kind, &std::pair<Kind, std::vector<int>>::first);
        if (known == rows.end()) {
            rows.push_back({kind, {mode.number}});
        } else {
            known->second.push_back(mode.number);
        }
    }
    Table table = {"modes | planes asked for | shade of a dot from its bits"};
    for (const auto& [kind, modes] : rows) {
        table.push_back(text(withCommas(modes), " | ", kind.first, " | ", kind.second));
    }
    const InputModeInfo& other = inputMode(std::uint8_t{77});
    EXPECT_EQ(ruleText(inputMode(InputMode::PinMame).dots, 0), ruleText(other.dots, 0));
    table.push_back(text("0 and all others | ", int{other.capturePlanes}, " | ",
                         ruleText(other.dots, other.capturePlanes)));
    page.expect(table);
    page.expect(text("On the XL controller every dot is ", ruleText(dump::XlDots, dump::XlPlanes),
                     ", whatever the mode."));
}

}  // namespace

const std::vector<Section>& answerSections() {
    static const std::vector<Section> all = {
        {"SettingsReply", readSettingsReply},
        {"SettingsExample", readSettingsExample},
        {"UniqueId", readUniqueId},
        {"Record", readRecord},
        {"DumpRequest", readDumpRequest},
        {"DumpReply", readDumpReply},
        {"Dots", readDots},
    };
    return all;
}

}  // namespace pages
