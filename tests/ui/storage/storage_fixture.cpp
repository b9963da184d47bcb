#include "tests/ui/storage/storage_fixture.h"

#include <bit>
#include <clocale>
#include <sstream>

#include "device/interfaceUSB.h"
#include "tests/support/byte_text.h"
#include "ui/palette.h"

using support::Members;

Storage::Storage() { std::setlocale(LC_CTYPE, "C.UTF-8"); }

Storage::~Storage() { std::setlocale(LC_CTYPE, "C"); }

void Storage::openWithSomeSettings() {
    open();
    setConfig(SomeRecord);
    window().setConfig(config);
    palette = SomePalette;
    window().setPal(palette.data());
}

void Storage::setConfig(const RecordBytes& bytes) {
    config = std::bit_cast<configDescriptor>(bytes);
}

RecordBytes Storage::configBytes() { return std::bit_cast<RecordBytes>(config); }

std::string Storage::controls() {
    std::ostringstream text;
    text << "modes checked:";
    for (const int mode : support::checkedModes(window())) {
        text << " " << mode;
    }
    text << "\ncolours shown:";
    for (const int colour : support::shownColours(window())) {
        text << " " << colour;
    }
    text << "\npainted: " << support::byteText(support::paintedPalette(window()))
         << "\npreset: " << the(&Members::set_pal).GetSelection()
         << "\nbrightness: " << the(&Members::brightness_Slider).GetValue()
         << "\nenhancer: " << the(&Members::enhancer_CheckBox).GetValue()
         << "\ndump: " << the(&Members::dump_CheckBox).GetValue()
         << "\nmode 1: " << the(&Members::wpc_Label).GetLabel().utf8_string()
         << "\nmode 2 shown: " << the(&Members::set_Stern).IsShown() << "\n";
    return text.str();
}

std::string Storage::everything() {
    return controls() + "config: " + support::byteText(configBytes()) +
           "\npalette: " + support::byteText(palette) + "\nversion: " + versionString +
           "\nid: " + UIDString + "\n";
}

void Storage::expectNothingChanges(const std::function<void()>& command) {
    bus.clearCalls();
    const std::string before = everything();
    command();
    EXPECT_EQ(everything(), before);
    EXPECT_THAT(bus.calls(), testing::IsEmpty());
}
