// How the application starts, what the window does while it is made, and how it goes.

#include <gmock/gmock.h>
#include <wx/image.h>
#include <wx/imagjpeg.h>
#include <wx/imagpng.h>

#include <clocale>
#include <cstdlib>
#include <cstring>

#include "app/main.h"
#include "device/interfaceUSB.h"
#include "tests/support/about_box.h"
#include "tests/support/bus_log.h"
#include "tests/support/toolkit.h"
#include "tests/support/window_test.h"

namespace {

using support::callLines;
using support::connection;
using support::Members;
using support::send;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

/// The real start of the application, from which its window is left.
class StartUp : public support::WindowTest {
protected:
    StartUp() {
        // As the toolkit leaves them before the application's start.
        wxImage::CleanUpHandlers();
        wxImage::InitStandardHandlers();
    }

    bool start() {
        const bool result = wxTheApp->CallOnInit();
        support::failOnToolkitAssertions();
        return result;
    }

    ~StartUp() override {
        if (wxWindow* const top = wxTheApp->GetTopWindow()) {
            top->Destroy();
            support::deleteClosedWindows();
        }
        wxTheApp->SetTopWindow(nullptr);
    }
};

TEST_F(StartUp, IsTheMainApps) {
    EXPECT_NE(dynamic_cast<MainApp*>(wxTheApp), nullptr);
    EXPECT_EQ(&wxGetApp(), wxTheApp);
}

TEST_F(StartUp, MakesOneControllerWindowAndShowsItAsTheTopWindow) {
    ASSERT_THAT(wxTopLevelWindows, IsEmpty());
    EXPECT_TRUE(start());
    ASSERT_EQ(wxTopLevelWindows.size(), 1U);
    auto* const window = dynamic_cast<MainFrame*>(wxTheApp->GetTopWindow());
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window, wxTopLevelWindows.front());
    EXPECT_EQ(window->GetParent(), nullptr);
    EXPECT_TRUE(window->IsShown());
    EXPECT_EQ(window->GetTitle(), "LUMADOT Spectra");
}

TEST_F(StartUp, AddsTheImageFormatsPngAndJpegInThisOrderAndNoOther) {
    const std::size_t standard = wxImage::GetHandlers().size();
    start();
    const wxList& handlers = wxImage::GetHandlers();
    ASSERT_EQ(handlers.size(), standard + 2);
    EXPECT_NE(dynamic_cast<wxPNGHandler*>(handlers.Item(standard)->GetData()), nullptr);
    EXPECT_NE(dynamic_cast<wxJPEGHandler*>(handlers.Item(standard + 1)->GetData()), nullptr);
}

/// A start in the locale that the environment names.
class StartInLocale : public StartUp {
protected:
    void start(const char* environment) {
        const char* const value = std::getenv("LC_ALL");
        const std::string before = value != nullptr ? value : "";  // Empty is as good as not set.
        setenv("LC_ALL", environment, 1);
        std::setlocale(LC_CTYPE, "C");
        StartUp::start();
        setenv("LC_ALL", before.c_str(), 1);
    }
    ~StartInLocale() override { std::setlocale(LC_CTYPE, "C"); }
};

TEST_F(StartInLocale, TakesTheEncodingOfFileNamesFromItAndNothingElse) {
    start("C.UTF-8");
    EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C.UTF-8");
    EXPECT_STREQ(wxString::FromUTF8("\xC3\xBC").mb_str(wxConvLibc), "\xC3\xBC");
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    EXPECT_STREQ(std::setlocale(LC_MESSAGES, nullptr), "C");
}

TEST_F(StartInLocale, IsSurvivedWhenTheLocaleIsNotInstalled) {
    start("xx_XX.nowhere");
    EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C");
}

TEST_F(StartUp, ShowsNoMessageAndLogsNothing) {
    const support::LogCollector log;
    start();
    support::deleteClosedWindows();
    EXPECT_EQ(dialogs.seen(), 0);
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(StartUp, ReadsTheController) {
    plug({.settings = {0, 0, 15, 10, 15, 12, 15, 0, 15, 15, 0, 0,
                       0, 0, 0,  0,  0,  0,  0,  0, 1,  1,  77}});
    start();
    EXPECT_EQ(config.brightness, 77);
}

// The window while it is made.

class Construction : public support::WindowTest {};

/// A record in which no byte has its first value.
constexpr simulator::Record Other = {7,  4,  31, 32, 33, 34, 35, 36, 37, 38, 39, 40,
                                     41, 42, 43, 44, 45, 46, 47, 48, 49, 0,  200};

TEST_F(Construction, AsksForTheSettingsThenForTheUniqueIdEachOverAConnectionOfItsOwn) {
    plug();
    make();
    EXPECT_EQ(callLines(),
              support::joined({connection({"out 0x01 2052 1000ms #0: 81 C3 E7 FF 10 00*2047",
                                           "in 0x81 63 1000ms #0"}),
                               connection({"out 0x01 2052 1000ms #0: 81 C3 E7 FF 11 00*2047",
                                           "in 0x81 63 1000ms counted #0"})}));
}

TEST_F(Construction, TakesOverTheWholeRecordTheVersionAndTheUniqueId) {
    plug({.firmware = "V1.23x", .uniqueId = "0123456789ABCDEF", .settings = Other});
    make();
    EXPECT_EQ(std::memcmp(&config, Other.data(), Other.size()), 0);
    EXPECT_STREQ(versionString, "V1.23x");
    EXPECT_STREQ(UIDString, "0123456789ABCDEF");
}

TEST_F(Construction, ShowsTheRecordThatWasRead) {
    plug({.settings = Other});
    make();
    EXPECT_THAT(support::checkedModes(window()), ElementsAre(7));
    EXPECT_EQ(the(&Members::set_pal).GetSelection(), 4);
    EXPECT_EQ(the(&Members::brightness_Slider).GetValue(), 200);
    EXPECT_FALSE(the(&Members::enhancer_CheckBox).GetValue());
}

TEST_F(Construction, ShowsTheBoardWhoseUniqueIdWasRead) {
    plug({.uniqueId = "X0000001"});
    make();
    EXPECT_EQ(the(&Members::wpc_Label).GetLabel(), "Sega192x64");
}

TEST_F(Construction, ShowsTheFactorySettingsWithoutAMessageWhenThereIsNoController) {
    make();
    EXPECT_EQ(dialogs.seen(), 0);
    EXPECT_THAT(support::sentFrames(), IsEmpty());
    EXPECT_EQ(std::memcmp(&config, support::FactorySettings.data(), 23), 0);
    EXPECT_STREQ(versionString, "");
    EXPECT_STREQ(UIDString, "");
    EXPECT_THAT(support::checkedModes(window()), ElementsAre(0));
    EXPECT_EQ(the(&Members::set_pal).GetSelection(), 0);
    EXPECT_EQ(the(&Members::brightness_Slider).GetValue(), 30);
    EXPECT_TRUE(the(&Members::enhancer_CheckBox).GetValue());
    EXPECT_EQ(the(&Members::wpc_Label).GetLabel(), "Bally/Williams");
    EXPECT_EQ(support::paintedPalette(window()), support::Vga);
}

TEST_F(Construction, ReportsASilentControllerInTheDeviceLinksOneMessageAndOpensAllTheSame) {
    plug();
    bus.inject({.function = "libusb_bulk_transfer", .result = -7, .endpoint = 0x81});
    dialogs.expectMessage("Firmware version not supported ! Please upgrade !", "Error");
    make();
    EXPECT_EQ(dialogs.seen(), 1);
    EXPECT_EQ(std::memcmp(&config, support::FactorySettings.data(), 23), 0);
    EXPECT_STREQ(UIDString, "3A7F00C21D5E9B64");
}

TEST_F(Construction, IsSilentAboutAUniqueIdThatCannotBeRead) {
    plug({.settings = Other});
    bus.inject({.function = "libusb_bulk_transfer", .nth = 2, .result = -7, .endpoint = 0x81});
    make();
    EXPECT_EQ(dialogs.seen(), 0);
    EXPECT_STREQ(UIDString, "");
    EXPECT_EQ(config.inputMode, 7);
}

TEST_F(Construction, LeavesTheWindowHidden) {
    make();
    EXPECT_FALSE(window().IsShown());
}

// The window's end.

class Closing : public support::WindowTest {};

TEST_F(Closing, SendsNothingToTheController) {
    plug();
    show();
    bus.clearCalls();
    const wxWindow* const gone = &window();
    window().Close();
    destroy();
    EXPECT_EQ(wxTopLevelWindows.Find(const_cast<wxWindow*>(gone)), nullptr);
    EXPECT_THAT(bus.calls(), IsEmpty());
}

TEST_F(Closing, LeavesTheGlobalsAlone) {
    plug({.settings = Other});
    open();
    int something = 0;
    auto* const handle = reinterpret_cast<libusb_device_handle*>(&something);
    MyLibusbDeviceHandle = handle;
    destroy();
    EXPECT_EQ(std::memcmp(&config, Other.data(), Other.size()), 0);
    EXPECT_EQ(MyLibusbDeviceHandle, handle);
}

TEST_F(Closing, HappensOnExit) {
    open();
    wxCommandEvent event;
    window().OnExit(event);
    EXPECT_TRUE(wxPendingDelete.Member(&window()));
}

TEST_F(Closing, CanBeVetoedOnExit) {
    open();
    bool couldVeto = false;
    window().Bind(wxEVT_CLOSE_WINDOW, [&](wxCloseEvent& event) {
        couldVeto = event.CanVeto();
        event.Veto();
    });
    wxCommandEvent event;
    window().OnExit(event);
    EXPECT_TRUE(couldVeto);
    EXPECT_FALSE(wxPendingDelete.Member(&window()));
}

// Help / About

class AboutBox : public support::WindowTest {
protected:
    AboutBox() {
        open();
        send(window(), the(&Members::about_Item));
    }
};

TEST_F(AboutBox, ShowsTheNameTheVersionAndTheTimeAndDateOfTheBuild) {
    const support::AboutBoxes boxes;
    ASSERT_EQ(boxes.count(), 1U);
    EXPECT_EQ(boxes.text("program-name"), "LUMADOT Tool");
    EXPECT_EQ(boxes.text("version"), "V4.02");
    EXPECT_THAT(boxes.text("comments"), MatchesRegex("[0-2][0-9]:[0-5][0-9]:[0-5][0-9]"));
    EXPECT_THAT(boxes.text("copyright"),
                MatchesRegex("(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) "
                             "[ 1-3][0-9] 20[0-9][0-9]"));
}

TEST_F(AboutBox, ShowsNothingElse) {
    const support::AboutBoxes boxes;
    ASSERT_EQ(boxes.count(), 1U);
    EXPECT_EQ(boxes.text("website"), "");
    EXPECT_EQ(boxes.text("website-label"), "");
    EXPECT_EQ(boxes.text("license"), "");
    EXPECT_EQ(boxes.text("translator-credits"), "");
    EXPECT_TRUE(boxes.hasNobody("authors"));
    EXPECT_TRUE(boxes.hasNobody("artists"));
    EXPECT_TRUE(boxes.hasNobody("documenters"));
    EXPECT_FALSE(boxes.hasLogo());
}

TEST_F(AboutBox, HasNothingToDoWithTheController) { EXPECT_THAT(bus.calls(), IsEmpty()); }

TEST_F(AboutBox, ComesAgainAfterItWasClosed) {
    support::AboutBoxes().close();
    EXPECT_EQ(support::AboutBoxes().count(), 0U);
    send(window(), the(&Members::about_Item));
    EXPECT_EQ(support::AboutBoxes().count(), 1U);
}

}  // namespace
