// Reading the settings from the controller. How a reply is read is tested in
// settings_record_test.cpp, what comes of failing calls and short replies in faults/.

#include <wx/msgdlg.h>

#include <string>
#include <string_view>

#include "tests/support/device_link.h"

namespace {

using support::bytesOf;
using support::callLines;
using support::RecordBytes;
using support::recordOf;

/// What the tool holds before the read, and what the controller holds: every byte different.
constexpr RecordBytes Own = {0x40, 0x41, 0x42, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x4A, 0x4B,
                             0x4C, 0x4D, 0x4E, 0x4F, 0x50, 0x51, 0x52, 0x53, 0x54, 0x55, 0x56};
constexpr RecordBytes Boards = {0x81, 0x82, 0x83, 0x84, 0x85, 0x86, 0x87, 0x88,
                                0x89, 0x8A, 0x8B, 0x8C, 0x8D, 0x8E, 0x8F, 0x90,
                                0x91, 0x92, 0x93, 0x94, 0x95, 0x96, 0x97};

/// A read over the record `Own` and the version text "old-text!".
class GetSettings : public support::DeviceLink {
protected:
    RecordBytes read() { return bytesOf(usb.getSettings(recordOf(Own), version.data())); }
    std::string_view versionText() const { return {version.data(), version.size()}; }

    std::array<char, 9> version = {'o', 'l', 'd', '-', 't', 'e', 'x', 't', '!'};
};

TEST_F(GetSettings, OfTheNewerLayoutTakesTheWholeRecordAndSixCharactersOfVersion) {
    bus.plugController({.settings = Boards});
    EXPECT_EQ(read(), Boards);
    EXPECT_EQ(versionText(), "V4.02bxt!");
}

TEST_F(GetSettings, OfTheOlderLayoutChangesBytes0And1And21And22Only) {
    bus.plugController({.layout = simulator::SettingsLayout::Older, .settings = Boards});
    EXPECT_EQ(read(),
              (RecordBytes{0x81, 0x82, 0x42, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x4A, 0x4B,
                           0x4C, 0x4D, 0x4E, 0x4F, 0x50, 0x51, 0x52, 0x53, 0x54, 0x96, 0x97}));
    EXPECT_EQ(versionText(), "old-text!");
}

TEST_F(GetSettings, LeavesTheToolsOwnRecordAndTextToTheCaller) {
    bus.plugController({.settings = Boards});
    const RecordBytes before = bytesOf(config);
    read();
    EXPECT_EQ(bytesOf(config), before);
    EXPECT_THAT(versionString, testing::Each('\0'));
}

TEST_F(GetSettings, IgnoresTheResultOfTheRequest) {
    bus.plugController();
    failTransfer(0x01, LIBUSB_ERROR_TIMEOUT);
    answer({0x0B, 0xC8, 0x01, 0x07});
    EXPECT_EQ(read()[0], 0x0B);
}

/// A read that returns anything but 0.
class FailedRead : public GetSettings, public testing::WithParamInterface<int> {};

TEST_P(FailedRead, IsReportedBeforeTheControllerIsReleased) {
    bus.plugController();
    failTransfer(0x81, GetParam());
    dialogs.expect([&](wxDialog& dialog) -> int {
        const auto* const box = dynamic_cast<wxMessageDialog*>(&dialog);
        EXPECT_NE(box, nullptr);
        if (box != nullptr) {
            EXPECT_EQ(box->GetMessage(), "Firmware version not supported ! Please upgrade !");
            EXPECT_EQ(box->GetTitle(), "Error");
            constexpr long Look = wxOK | wxCANCEL | wxYES_NO | wxHELP | wxICON_MASK;
            // The icon is the toolkit's own for a plain box.
            EXPECT_EQ(box->GetMessageDialogStyle() & Look, wxOK | wxICON_INFORMATION);
        }
        EXPECT_EQ(callLines().back(), "in 0x81 63 1000ms #0");
        EXPECT_EQ(bus.claimedInterfaces(), 1);
        return wxID_OK;
    });
    EXPECT_EQ(read(), Own);
    EXPECT_EQ(dialogs.seen(), 1);
    EXPECT_EQ(bus.openHandles(), 0);
}

INSTANTIATE_TEST_SUITE_P(With, FailedRead, testing::Values(LIBUSB_ERROR_TIMEOUT, 1),
                         [](const auto& test) { return test.param < 0 ? "AnError" : "One"; });

}  // namespace
