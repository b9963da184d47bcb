#ifndef LUMADOT_DEVICE_SETTINGS_RECORD_H
#define LUMADOT_DEVICE_SETTINGS_RECORD_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <type_traits>

/// The controller's settings record: 23 bytes without padding. The same byte sequence lies in
/// memory, in the frame that writes the settings, in the settings reply and in a settings file.
///
/// `deviceParam2` .. `deviceParam20` mean something to the controller only; the tool carries them
/// unchanged.
struct configDescriptor {
    /// Sets bytes 0..9 and 19..22 to the factory settings. Bytes 10..18 have none, and are left as
    /// they are: zero in the global `config`, and undefined in a record on the stack.
    // cppcheck-suppress uninitMemberVar
    configDescriptor();

    std::uint8_t inputMode = 0;      ///< byte 0: number of an InputMode, 0..15
    std::uint8_t paletteIndex = 0;   ///< byte 1: palette preset, 0..8
    std::uint8_t deviceParam2 = 15;  ///< byte 2
    std::uint8_t deviceParam3 = 10;  ///< byte 3
    std::uint8_t deviceParam4 = 15;  ///< byte 4
    std::uint8_t deviceParam5 = 12;  ///< byte 5
    std::uint8_t deviceParam6 = 15;  ///< byte 6
    std::uint8_t deviceParam7 = 0;   ///< byte 7
    std::uint8_t deviceParam8 = 15;  ///< byte 8
    std::uint8_t deviceParam9 = 15;  ///< byte 9
    std::uint8_t deviceParam10;      ///< byte 10
    std::uint8_t deviceParam11;      ///< byte 11
    std::uint8_t deviceParam12;      ///< byte 12
    std::uint8_t deviceParam13;      ///< byte 13
    std::uint8_t deviceParam14;      ///< byte 14
    std::uint8_t deviceParam15;      ///< byte 15
    std::uint8_t deviceParam16;      ///< byte 16
    std::uint8_t deviceParam17;      ///< byte 17
    std::uint8_t deviceParam18;      ///< byte 18
    std::uint8_t deviceParam19 = 0;  ///< byte 19
    std::uint8_t deviceParam20 = 1;  ///< byte 20
    std::uint8_t enhancer = 1;       ///< byte 21: "Signal Enhancer", 0 off, 1 on
    std::uint8_t brightness = 30;    ///< byte 22: a controller may send less than MinBrightness
};

static_assert(sizeof(configDescriptor) == 23);
static_assert(std::is_trivially_copyable_v<configDescriptor>);

/// The record's bytes, and the settings reply that carries them.
namespace settings {

inline constexpr std::size_t RecordSize = sizeof(configDescriptor);

/// What the slider sets and the controller is sent. Not from 0 on: no setting makes the display
/// dark.
inline constexpr int MinBrightness = 10;
inline constexpr int MaxBrightness = 255;

/// Length of the read that fetches the settings reply, in bytes.
inline constexpr int ReplyLength = 63;

/// Characters of a firmware version text, as sent; the text has no terminating zero of its own.
inline constexpr std::size_t VersionLength = 6;

/// Buffer of a settings reply, zero-filled before the read.
using Reply = std::array<std::uint8_t, 64>;

std::array<std::uint8_t, RecordSize> bytesOf(const configDescriptor& record);
configDescriptor fromBytes(std::span<const std::uint8_t, RecordSize> bytes);

/// As many bytes of a settings file tell whether it is one: one more than a record is too many.
inline constexpr std::size_t FileHead = RecordSize + 1;

/// The record in a settings file, given by its first bytes (FileHead are enough). Nothing unless
/// there are 23; the values are not checked.
std::optional<configDescriptor> fromFile(std::span<const std::uint8_t> head);

/// Takes over what a settings reply holds. Two layouts exist, told apart by byte 4:
///
///   newer (byte 4 is 'V')   bytes 4..9    version text -> `version` bytes 0..5
///                           bytes 10..32  the record   -> `record` bytes 0..22
///   older (anything else)   byte 0 -> inputMode, 1 -> brightness, 2 -> enhancer,
///                           3 -> paletteIndex; everything else stays as it was
///
/// `version` has room for at least 6 characters. Bytes that did not arrive are the reply buffer's
/// zeros and are copied like data.
void applyReply(const Reply& reply, configDescriptor& record, char* version);

}  // namespace settings

#endif
