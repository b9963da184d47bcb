// Reading the settings from the controller and writing them to it.

#include <wx/msgdlg.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/device_link.h"

namespace {

using support::bytesOf;
using support::callLines;
using support::joined;
using support::Lines;
using support::RecordBytes;
using support::recordOf;

constexpr std::string_view ReadFailed = "Firmware version not supported ! Please upgrade !";

/// What the tool holds before the read: every byte different.
constexpr RecordBytes Own = {0x40, 0x41, 0x42, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x4A, 0x4B,
                             0x4C, 0x4D, 0x4E, 0x4F, 0x50, 0x51, 0x52, 0x53, 0x54, 0x55, 0x56};

/// 63 bytes, none of them zero; bytes 0..3 and from 33 on mean nothing to the tool.
constexpr std::array<std::uint8_t, 63> NewerReply = {
    0xE0, 0xE1, 0xE2, 0xE3, 'V',  '4',  '.',  '0',  '2',  'b',                     // version
    0x81, 0x82, 0x83, 0x84, 0x85, 0x86, 0x87, 0x88, 0x89, 0x8A, 0x8B, 0x8C,        // record
    0x8D, 0x8E, 0x8F, 0x90, 0x91, 0x92, 0x93, 0x94, 0x95, 0x96, 0x97,              //
    0xC1, 0xC2, 0xC3, 0xC4, 0xC5, 0xC6, 0xC7, 0xC8, 0xC9, 0xCA, 0xCB, 0xCC, 0xCD,  // nothing
    0xCE, 0xCF, 0xD0, 0xD1, 0xD2, 0xD3, 0xD4, 0xD5, 0xD6, 0xD7, 0xD8, 0xD9, 0xDA,
    0xDB, 0xDC, 0xDD, 0xDE};

constexpr std::array<std::uint8_t, 63> OlderReply = {
    0x0B, 0xC8, 0x01, 0x07, 0xE4, 0xE5, 0xE6, 0xE7, 0xE8, 0xE9, 0xEA, 0xEB, 0xEC, 0xED, 0xEE, 0xEF,
    0xF0, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7, 0xF8, 0xF9, 0xFA, 0xFB, 0xFC, 0xFD, 0xFE, 0xFF,
    0xE1, 0xE2, 0xE3, 0xE4, 0xE5, 0xE6, 0xE7, 0xE8, 0xE9, 0xEA, 0xEB, 0xEC, 0xED, 0xEE, 0xEF, 0xF0,
    0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7, 0xF8, 0xF9, 0xFA, 0xFB, 0xFC, 0xFD, 0xFE, 0xFF};

Lines requestLines() {
    return {"out 0x01 2052 1000ms #0: 81 C3 E7 FF 10 00*2047", "in 0x81 63 1000ms #0"};
}

/// A read over the record `Own` and the version text "old-text", with one controller on the bus.
class GetSettings : public support::DeviceLink {
protected:
    GetSettings() { std::ranges::copy(std::string_view("old-text!"), version.begin()); }

    RecordBytes read() { return bytesOf(usb.getSettings(recordOf(Own), version.data())); }

    /// The read, answered by the first `length` bytes of `reply`.
    RecordBytes readReply(const std::array<std::uint8_t, 63>& reply, std::size_t length) {
        answer({reply.begin(), reply.begin() + static_cast<std::ptrdiff_t>(length)});
        return read();
    }

    std::string_view versionText() const { return {version.data(), version.size()}; }

    std::shared_ptr<simulator::Controller> controller = bus.plugController();
    std::array<char, 9> version{};
};

TEST_F(GetSettings, SendsTheRequestAndReads63BytesInOneConnection) {
    read();
    EXPECT_EQ(callLines(),
              joined({support::setupLines(), requestLines(), support::releaseLines()}));
    expectReleased();
}

TEST_F(GetSettings, OfTheNewerLayoutTakesVersionAndWholeRecord) {
    EXPECT_EQ(readReply(NewerReply, 63),
              (RecordBytes{0x81, 0x82, 0x83, 0x84, 0x85, 0x86, 0x87, 0x88, 0x89, 0x8A, 0x8B, 0x8C,
                           0x8D, 0x8E, 0x8F, 0x90, 0x91, 0x92, 0x93, 0x94, 0x95, 0x96, 0x97}));
}

TEST_F(GetSettings, OfTheNewerLayoutWritesExactlySixCharactersOfVersion) {
    readReply(NewerReply, 63);
    EXPECT_EQ(versionText(), "V4.02bxt!");
}

TEST_F(GetSettings, OfTheOlderLayoutChangesBytes0And1And21And22Only) {
    EXPECT_EQ(readReply(OlderReply, 63),
              (RecordBytes{0x0B, 0x07, 0x42, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x4A, 0x4B,
                           0x4C, 0x4D, 0x4E, 0x4F, 0x50, 0x51, 0x52, 0x53, 0x54, 0x01, 0xC8}));
}

TEST_F(GetSettings, OfTheOlderLayoutLeavesTheVersionText) {
    readReply(OlderReply, 63);
    EXPECT_EQ(versionText(), "old-text!");
}

TEST_F(GetSettings, TakesABrightnessBelow10AsItComes) {
    std::array<std::uint8_t, 63> newer = NewerReply;
    newer[32] = 3;
    EXPECT_EQ(readReply(newer, 63)[22], 3);
    std::array<std::uint8_t, 63> older = OlderReply;
    older[1] = 0;
    EXPECT_EQ(readReply(older, 63)[22], 0);
}

TEST_F(GetSettings, LeavesTheToolsOwnRecordToTheCaller) {
    const RecordBytes before = bytesOf(config);
    readReply(NewerReply, 63);
    EXPECT_EQ(bytesOf(config), before);
    EXPECT_THAT(versionString, testing::Each('\0'));
}

TEST_F(GetSettings, IgnoresTheResultOfTheRequest) {
    failTransfer(0x01, LIBUSB_ERROR_TIMEOUT);
    EXPECT_EQ(readReply(NewerReply, 63)[0], 0x81);
    EXPECT_EQ(versionText(), "V4.02bxt!");
}

TEST_F(GetSettings, WithoutControllerShowsNothing) {
    bus.unplug(0);
    EXPECT_EQ(read(), Own);
    EXPECT_EQ(dialogs.seen(), 0);
}

TEST_F(GetSettings, ReadsAControllerOfTheNewerLayout) {
    read();
    EXPECT_EQ(read(), (RecordBytes{0, 0, 15, 10, 15, 12, 15, 0, 15, 15, 0, 0,
                                   0, 0, 0,  0,  0,  0,  0,  0, 1,  1,  30}));
    EXPECT_EQ(versionText(), "V4.02bxt!");
}

TEST_F(GetSettings, ReadsAControllerOfTheOlderLayout) {
    bus.reset();
    bus.plugController({.layout = simulator::SettingsLayout::Older});
    EXPECT_EQ(read(),
              (RecordBytes{0,    0,    0x42, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x4A, 0x4B,
                           0x4C, 0x4D, 0x4E, 0x4F, 0x50, 0x51, 0x52, 0x53, 0x54, 1,    30}));
    EXPECT_EQ(versionText(), "old-text!");
}

class ShortReply : public GetSettings, public testing::WithParamInterface<std::size_t> {};

TEST_P(ShortReply, OfTheNewerLayoutHasZerosForWhatDidNotArrive) {
    const std::size_t arrived = GetParam();
    RecordBytes expected{};
    std::string expectedVersion = "old-text!";
    if (arrived > 4) {
        for (std::size_t i = 0; i < 23; ++i) {
            expected[i] = 10 + i < arrived ? NewerReply[10 + i] : 0;
        }
        for (std::size_t i = 0; i < 6; ++i) {
            expectedVersion[i] = 4 + i < arrived ? static_cast<char>(NewerReply[4 + i]) : '\0';
        }
    } else {  // The V that tells the layouts apart did not arrive.
        expected = Own;
        expected[0] = arrived > 0 ? 0xE0 : 0;
        expected[22] = arrived > 1 ? 0xE1 : 0;
        expected[21] = arrived > 2 ? 0xE2 : 0;
        expected[1] = arrived > 3 ? 0xE3 : 0;
    }
    EXPECT_EQ(readReply(NewerReply, arrived), expected);
    EXPECT_EQ(versionText(), expectedVersion);
}

TEST_P(ShortReply, OfTheOlderLayoutHasZerosForWhatDidNotArrive) {
    const std::size_t arrived = GetParam();
    RecordBytes expected = Own;
    expected[0] = arrived > 0 ? 0x0B : 0;
    expected[22] = arrived > 1 ? 0xC8 : 0;
    expected[21] = arrived > 2 ? 0x01 : 0;
    expected[1] = arrived > 3 ? 0x07 : 0;
    EXPECT_EQ(readReply(OlderReply, arrived), expected);
    EXPECT_EQ(versionText(), "old-text!");
}

INSTANTIATE_TEST_SUITE_P(EveryLength, ShortReply, testing::Range<std::size_t>(0, 63),
                         [](const auto& test) { return "Of" + std::to_string(test.param); });

/// A read that returns anything but 0.
class FailedRead : public GetSettings, public testing::WithParamInterface<int> {
protected:
    FailedRead() { failTransfer(0x81, GetParam()); }
};

TEST_P(FailedRead, IsReportedBeforeTheControllerIsReleased) {
    dialogs.expect([&](wxDialog& dialog) -> int {
        const auto* const box = dynamic_cast<wxMessageDialog*>(&dialog);
        EXPECT_NE(box, nullptr);
        if (box != nullptr) {
            EXPECT_EQ(box->GetMessage(), ReadFailed.data());
            EXPECT_EQ(box->GetTitle(), "Error");
            constexpr long Look = wxOK | wxCANCEL | wxYES_NO | wxHELP | wxICON_MASK;
            // The icon is the toolkit's own for a plain box.
            EXPECT_EQ(box->GetMessageDialogStyle() & Look, wxOK | wxICON_INFORMATION);
        }
        EXPECT_EQ(callLines(), joined({support::setupLines(), requestLines()}));
        EXPECT_EQ(bus.openHandles(), 1);
        EXPECT_EQ(bus.claimedInterfaces(), 1);
        return wxID_OK;
    });
    read();
    EXPECT_EQ(dialogs.seen(), 1);
}

TEST_P(FailedRead, ReleasesAndClosesWithoutClearingTheHandle) {
    dialogs.expectMessage(ReadFailed.data(), "Error");
    read();
    EXPECT_EQ(callLines(),
              joined({support::setupLines(), requestLines(), support::releaseLines()}));
    EXPECT_EQ(bus.openHandles(), 0);
    EXPECT_EQ(bus.claimedInterfaces(), 0);
    EXPECT_EQ(bus.deviceLists(), 0);
    EXPECT_NE(MyLibusbDeviceHandle, nullptr);
}

TEST_P(FailedRead, ChangesNeitherRecordNorVersion) {
    dialogs.expectMessage(ReadFailed.data(), "Error");
    EXPECT_EQ(read(), Own);
    EXPECT_EQ(versionText(), "old-text!");
}

TEST_P(FailedRead, ChangesNothingWhenBytesArrivedAllTheSame) {
    dialogs.expectMessage(ReadFailed.data(), "Error");
    EXPECT_EQ(readReply(NewerReply, 63), Own);
    EXPECT_EQ(versionText(), "old-text!");
}

INSTANTIATE_TEST_SUITE_P(With, FailedRead,
                         testing::Values(LIBUSB_ERROR_TIMEOUT, LIBUSB_ERROR_IO,
                                         LIBUSB_ERROR_NO_DEVICE, LIBUSB_ERROR_PIPE,
                                         LIBUSB_ERROR_OVERFLOW, LIBUSB_ERROR_OTHER, 1),
                         [](const auto& test) {
                             return (test.param < 0 ? "Error" : "Result") +
                                    std::to_string(std::abs(test.param));
                         });

class SendConfig : public support::DeviceLink {
protected:
    std::shared_ptr<simulator::Controller> controller = bus.plugController();
};

TEST_F(SendConfig, SendsTheRecordInBytes5To27AndNothingElse) {
    usb.sendConfig(recordOf(Own));
    const Lines frame = {
        "out 0x01 2052 1000ms #0: 81 C3 E7 FF 20 40 41 42 43 44 45 46 47 48 49 4A 4B 4C 4D 4E 4F "
        "50 51 52 53 54 55 56 00*2024"};
    EXPECT_EQ(callLines(), joined({support::setupLines(), frame, support::releaseLines()}));
    expectReleased();
}

TEST_F(SendConfig, ReachesTheControllersWorkingSettingsOnly) {
    const auto permanent = controller->permanent();
    usb.sendConfig(recordOf(Own));
    EXPECT_EQ(controller->working(), Own);
    EXPECT_EQ(controller->permanent(), permanent);
}

TEST_F(SendConfig, SendsAnAllZeroRecord) {
    usb.sendConfig(recordOf({}));
    EXPECT_EQ(callLines().at(7), "out 0x01 2052 1000ms #0: 81 C3 E7 FF 20 00*2047");
}

TEST_F(SendConfig, SaysNothingOfAFailedWrite) {
    failTransfer(0x01, LIBUSB_ERROR_TIMEOUT);
    usb.sendConfig(recordOf(Own));
    EXPECT_EQ(dialogs.seen(), 0);
    expectReleased();
}

}  // namespace
