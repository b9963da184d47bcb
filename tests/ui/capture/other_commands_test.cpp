// Every other command in the middle of a capture: it reaches the controller, and the capture goes
// on.

#include <wx/filedlg.h>
#include <wx/msgdlg.h>

#include <functional>

#include "tests/support/about_box.h"
#include "tests/ui/capture/capture_window.h"

namespace {

using support::CaptureWindow;
using support::Members;
using testing::Contains;
using testing::HasSubstr;

/// Gives the rows of the table below what only tests may use.
class Fixture : public CaptureWindow {
public:
    MainFrame& main() { return *frame; }
    support::Dialogs& answers() { return dialogs; }
    std::filesystem::path file(const std::string& name, std::size_t size) {
        const auto path = otherFolder.path() / name;
        support::writeFile(path, std::vector<std::uint8_t>(size, 1));
        return path;
    }
    void TestBody() override {}
};

void menu(Fixture& test, wxMenuItem* MainFrameBaseClass::*item) {
    EXPECT_TRUE(support::send(test.main(), *(test.main().*item)));
}

void colour(Fixture& test) {
    test.answers().expectColour(wxColour(0, 0, 0), wxColour(1, 2, 3));
    support::send(support::in(test.main(), &Members::set_col0), wxEVT_BUTTON);
}

void loadConfig(Fixture& test, std::size_t size) {
    const auto path = test.file("lumadot.dat", size);
    test.answers().expectFile({"Open Config file", "Config files (lumadot.dat)|lumadot.dat",
                               wxFD_OPEN | wxFD_FILE_MUST_EXIST, ""},
                              wxString(path.string()));
    if (size != 23) {
        test.answers().expectMessage("File Error", "Message");
    }
    menu(test, &Members::load_config);
}

void upload(Fixture& test) {
    const auto path = test.file("hi.txt", 3);
    test.answers().expectFile(
        {"Upload File", "All files (*.*)|*.*", wxFD_OPEN | wxFD_FILE_MUST_EXIST, ""},
        wxString(path.string()));
    test.answers().expect([](wxDialog&) -> int { return wxID_OK; });  // The destination's name.
    test.answers().expectMessage("File Upload Successful !", "Message");
    menu(test, &Members::upload_Device);
}

void loadFromDevice(Fixture& test) {
    test.answers().expect([](wxDialog&) -> int { return wxID_OK; });  // What it found.
    menu(test, &Members::load_Device);
}

void brightness(Fixture& test) {
    auto& slider = support::in(test.main(), &Members::brightness_Slider);
    slider.SetValue(200);
    support::send(slider, wxEVT_SCROLL_THUMBTRACK);
}

void preset(Fixture& test) {
    auto& choice = support::in(test.main(), &Members::set_pal);
    choice.SetSelection(8);
    support::send(choice, wxEVT_CHOICE, 8);
}

void about(Fixture& test) {
    menu(test, &Members::about_Item);
    support::AboutBoxes().close();
}

struct Row {
    const char* name;
    std::function<void(Fixture&)> run;
    std::vector<std::string> sent;  ///< how the frames to the controller start
};

class CommandInACapture : public Fixture, public testing::WithParamInterface<Row> {
protected:
    void expectSent() const {
        for (const std::string& bytes : GetParam().sent) {
            EXPECT_THAT(support::callLines(), Contains(HasSubstr("#0: 81 C3 E7 FF " + bytes)));
        }
    }
};

TEST_P(CommandInACapture, ReachesTheControllerAndTheCaptureGoesOn) {
    start();
    choose(folder.path());
    rounds.after(2, [&] {
        bus.clearCalls();
        GetParam().run(*this);
        expectSent();
    });
    rounds.after(5, [&] { untick(); });
    tick();
    EXPECT_EQ(rounds.frames(), 5);
    EXPECT_EQ(textFrames(folder.path()), 5U);
    expectGivenBack();
}

TEST_P(CommandInACapture, InTheRoundThatEndsItLeavesNothingOpen) {
    start();
    choose(folder.path());
    rounds.after(2, [&] { GetParam().run(*this); });
    rounds.after(2, [&] { untick(); });
    tick();
    expectSent();
    EXPECT_EQ(rounds.frames(), 2);
    expectGivenBack();
}

INSTANTIATE_TEST_SUITE_P(
    Each, CommandInACapture,
    testing::Values(
        Row{"mode",
            [](Fixture& test) {
                support::send(support::in(test.main(), &Members::set_Stern), wxEVT_RADIOBUTTON, 1);
            },
            {"02 02"}},
        Row{"preset", preset, {"03 08"}}, Row{"brightness", brightness, {"08 00*12 C8"}},
        Row{"enhancer",
            [](Fixture& test) {
                support::send(support::in(test.main(), &Members::enhancer_CheckBox), wxEVT_CHECKBOX,
                              0);
                EXPECT_EQ(config.enhancer, 0);
            },
            {}},
        Row{"colour", colour, {"04 00 01 01 02 03"}},
        Row{"load_from_device", loadFromDevice, {"10", "11"}},
        Row{"save_to_device",
            [](Fixture& test) { menu(test, &Members::save_Device); },
            {"20 01", "01"}},
        Row{"palette_to_device",
            [](Fixture& test) { menu(test, &Members::palette_Device); },
            {"03 00", "04 00 01", "12"}},
        Row{"upload", upload, {"0A 00 68 69", "0A 01 00 03 01 01 01", "0A FF"}},
        Row{"reset", [](Fixture& test) { menu(test, &Members::reset_Device); }, {"00", "10"}},
        Row{"load_config", [](Fixture& test) { loadConfig(test, 23); }, {}},
        Row{"load_config_that_is_none", [](Fixture& test) { loadConfig(test, 22); }, {}},
        Row{"about", about, {}}),
    [](const auto& row) { return row.param.name; });

using Unplugged = CaptureWindow;

TEST_F(Unplugged, CommandDoesNothingAndTheCaptureWaitsForTheNextController) {
    start();
    choose(folder.path());
    rounds.after(2, [&] {
        bus.unplug(0);
        support::send(support::in(*frame, &Members::set_Stern), wxEVT_RADIOBUTTON, 1);
        EXPECT_EQ(config.inputMode, 2);
        const int enumerations = rounds.enumerations();
        rounds.afterEnumeration(enumerations + 3, [&] { plugAt(1); });
    });
    rounds.after(4, [&] { untick(); });
    tick();
    EXPECT_EQ(textFrames(folder.path()), 4U);
    expectGivenBack();
}

TEST_F(Unplugged, CaptureThatLooksForItCanBeStopped) {
    start();
    choose(folder.path());
    rounds.after(2, [&] {
        bus.unplug(0);
        support::send(support::in(*frame, &Members::set_Stern), wxEVT_RADIOBUTTON, 1);
        rounds.afterEnumeration(rounds.enumerations() + 3, [&] { untick(); });
    });
    tick();
    EXPECT_EQ(rounds.frames(), 2);
    expectGivenBack();
}

TEST_F(Unplugged, SeveralCommandsWhileTheCaptureLooksForItAreSafe) {
    start();
    choose(folder.path());
    rounds.after(2, [&] {
        bus.unplug(0);
        support::send(support::in(*frame, &Members::set_Stern), wxEVT_RADIOBUTTON, 1);
        for (int later = 1; later < 4; ++later) {
            rounds.afterEnumeration(rounds.enumerations() + later, [&] {
                support::send(support::in(*frame, &Members::set_WPC), wxEVT_RADIOBUTTON, 1);
            });
        }
        rounds.afterEnumeration(rounds.enumerations() + 8, [&] { untick(); });
    });
    tick();
    EXPECT_EQ(rounds.frames(), 2);
    expectGivenBack();
}

TEST_F(Unplugged, CaptureWithoutCommandsCanBeStopped) {
    start();
    choose(folder.path());
    rounds.after(2, [&] { bus.unplug(0); });
    rounds.after(4, [&] { untick(); });
    tick();
    EXPECT_EQ(textFrames(folder.path()), 2U);
    EXPECT_EQ(bus.openHandles(), 0);
}

using UnansweredRead = CaptureWindow;

/// The read's failure leaves a closed handle behind, on purpose.
TEST_F(UnansweredRead, InACommandIsReportedAndTheCaptureGoesOn) {
    start();
    choose(folder.path());
    rounds.after(2, [&] {
        dialogs.expectMessage("Firmware version not supported ! Please upgrade !", "Error");
        bus.inject({.function = "libusb_bulk_transfer", .result = -7, .endpoint = 0x81});
        support::send(*frame, *(frame.get()->*(&Members::reset_Device)));
        EXPECT_NE(MyLibusbDeviceHandle, nullptr);
    });
    rounds.after(5, [&] { untick(); });
    tick();
    EXPECT_EQ(textFrames(folder.path()), 5U);
    expectGivenBack();
}

}  // namespace
