// Pictures of any content, read and fitted to a display. The chunks' checksums are made right, so
// that what is in them gets a look.

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "fuzz/expect.h"
#include "pictures/picture.h"
#include "recording/error.h"

namespace {

constexpr std::size_t Signature = 8;
constexpr std::size_t Width = 16;   ///< where in a PNG it stands
constexpr std::size_t Height = 20;  ///< likewise
constexpr std::uint64_t FewPixels = 1024;

std::uint32_t numberAt(const std::vector<std::uint8_t>& bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = at; i < at + 4; ++i) {
        number = number << 8U | bytes[i];
    }
    return number;
}

/// A chunk is its length, four letters, so many bytes, and the checksum of all but the length.
void mendChecksums(std::vector<std::uint8_t>& bytes) {
    constexpr std::size_t Around = 12;
    for (std::size_t at = Signature; at + Around <= bytes.size();) {
        const std::uint64_t length = numberAt(bytes, at);
        if (at + Around + length > bytes.size()) {
            return;
        }
        const auto sum =
            static_cast<std::uint32_t>(crc32(0, &bytes[at + 4], static_cast<uInt>(length + 4)));
        for (std::size_t i = 0; i < 4; ++i) {
            bytes[at + 8 + length + i] = static_cast<std::uint8_t>(sum >> (24 - 8 * i));
        }
        at += Around + length;
    }
}

/// Whether it would take long without telling more; what is far too large is refused at once.
bool isLarge(const std::vector<std::uint8_t>& bytes) {
    if (bytes.size() < Height + 4) {
        return false;
    }
    const std::uint64_t pixels = std::uint64_t{numberAt(bytes, Width)} * numberAt(bytes, Height);
    return pixels > FewPixels && pixels <= pictures::MostPicturePixels;
}

/// Brightest last, of several hues.
constexpr std::array<std::uint8_t, 3 * display::Entries> Palette = {
    0, 0, 0, 64, 0, 0, 0, 64, 0, 0, 0, 64, 128, 128, 0, 0, 255, 0, 255, 255, 255};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t Columns = 12;
    constexpr std::size_t Rows = 5;
    std::vector<std::uint8_t> bytes(data, data + size);
    mendChecksums(bytes);
    if (isLarge(bytes)) {
        return 0;
    }
    try {
        const pictures::Picture picture = pictures::decodePng(bytes, "input");
        EXPECT(picture.width > 0 && picture.height > 0);
        EXPECT(picture.rgb.size() == 3 * picture.width * picture.height);
        const auto entries = pictures::fitToDisplay(picture, Palette, Columns, Rows);
        EXPECT(entries.size() == Columns * Rows);
        EXPECT(std::ranges::all_of(entries, [](auto entry) { return entry < display::Entries; }));
    } catch (const recording::Error& error) {
        EXPECT(error.failure() == recording::Failure::NotAPicture);
    }
    return 0;
}
