#ifndef LUMADOT_TESTS_UI_STORAGE_STORAGE_FIXTURE_H
#define LUMADOT_TESTS_UI_STORAGE_STORAGE_FIXTURE_H

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/temporary_folder.h"
#include "tests/support/window_test.h"

using Bytes = std::vector<std::uint8_t>;
using RecordBytes = std::array<std::uint8_t, 23>;
using PaletteBytes = std::array<std::uint8_t, 48>;

/// Mode 5, preset 3, brightness 77, enhancer off, and a value of its own in every other byte.
inline constexpr RecordBytes SomeRecord = {5,  3,  32, 33, 34, 35, 36, 37, 38, 39, 40, 41,
                                           42, 43, 44, 45, 46, 47, 48, 49, 50, 0,  77};

/// No preset: each byte has a value of its own.
inline constexpr PaletteBytes SomePalette = {
    0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19, 0x1A, 0x1B, 0x1C, 0x1D, 0x1E, 0x1F,
    0x20, 0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0x27, 0x28, 0x29, 0x2A, 0x2B, 0x2C, 0x2D, 0x2E, 0x2F,
    0x30, 0x31, 0x32, 0x33, 0x34, 0x35, 0x36, 0x37, 0x38, 0x39, 0x3A, 0x3B, 0x3C, 0x3D, 0x3E, 0x3F};

/// Preset 5, "Cyan".
inline constexpr PaletteBytes Cyan = {
    0x00, 0x00, 0x00, 0x00, 0x11, 0x11, 0x00, 0x22, 0x22, 0x00, 0x33, 0x33, 0x00, 0x44, 0x44, 0x00,
    0x55, 0x55, 0x00, 0x66, 0x66, 0x00, 0x77, 0x77, 0x00, 0x88, 0x88, 0x00, 0x99, 0x99, 0x00, 0xAA,
    0xAA, 0x00, 0xBB, 0xBB, 0x00, 0xCC, 0xCC, 0x00, 0xDD, 0xDD, 0x00, 0xEE, 0xEE, 0x00, 0xFF, 0xFF};

/// A test of a menu item of the open window, with a folder for files, in a UTF-8 locale.
class Storage : public support::WindowTest {
protected:
    Storage();
    ~Storage() override;

    /// Makes the window as it is with `SomeRecord` and `SomePalette`, both shown, no controller.
    void openWithSomeSettings();

    void setConfig(const RecordBytes& bytes);
    static RecordBytes configBytes();

    void choose(wxMenuItem* MainFrameBaseClass::*item) {
        EXPECT_TRUE(support::send(window(), the(item))) << "no handler took it";
    }

    /// What the window's controls show, as text.
    std::string controls();
    /// The controls, the settings, the palette and the texts, as text.
    std::string everything();

    /// Fails unless `command` leaves everything as it was and calls no USB function.
    void expectNothingChanges(const std::function<void()>& command);

    const support::TemporaryFolder folder;
};

#endif
