// The frames of an upload: a name and a content of any length, and any answers, against frames that
// are put together here byte by byte. The input: length of the name and of the content (two bytes
// each), number of answers, the answers (one byte each, missing ones accept), and the material that
// name and content are made of, over and over.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

#include "device/upload.h"
#include "fuzz/expect.h"

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t FrameSize = 2052;
constexpr std::size_t BlockSize = 512;
constexpr std::size_t Longest = 4096;  // Of the name, which no frame holds, and of the content.

struct Upload {
    std::string name;
    std::string content;
    Bytes answers;

    std::size_t frames() const { return content.size() / BlockSize + 3; }
    std::uint8_t answer(std::size_t frame) const {
        return frame < answers.size() ? answers[frame] : 0;
    }
};

std::string madeOf(Bytes material, std::size_t length) {
    std::string made(material.begin(), material.end());
    if (made.empty()) {
        made = "\xA5";
    }
    while (made.size() < length) {
        made += made;
    }
    made.resize(length);
    return made;
}

Upload uploadIn(Bytes input) {
    constexpr std::size_t Head = 5;
    const std::size_t name = (input[0] + 0x100U * input[1]) % Longest;
    const std::size_t content = (input[2] + 0x100U * input[3]) % Longest;
    const std::size_t answers = std::min<std::size_t>(input[4], input.size() - Head);
    const Bytes material = input.subspan(Head + answers);
    return {madeOf(material, name), madeOf(material, content), input.subspan(Head, answers)};
}

/// Frame 0 is the open frame, the last one the close frame.
std::array<std::uint8_t, FrameSize> expectedFrame(const Upload& upload, std::size_t number) {
    std::array<std::uint8_t, FrameSize> frame{0x81, 0xC3, 0xE7, 0xFF, 0x0A};
    if (number == 0) {
        std::memcpy(&frame[6], upload.name.data(), std::min<std::size_t>(upload.name.size(), 2046));
    } else if (number == upload.frames() - 1) {
        frame[5] = 0xFF;
    } else {
        const std::size_t from = (number - 1) * BlockSize;
        const std::size_t length = std::min(BlockSize, upload.content.size() - from);
        frame[5] = 1;
        frame[6] = static_cast<std::uint8_t>(length / 256);
        frame[7] = static_cast<std::uint8_t>(length % 256);
        std::memcpy(&frame[8], upload.content.data() + from, length);
    }
    return frame;
}

upload::Outcome expectedOutcome(const Upload& upload, std::size_t refused) {
    if (refused == upload.frames()) {
        return upload::Outcome::Done;
    }
    if (refused == 0) {
        return upload::Outcome::OpenRefused;
    }
    return refused == upload.frames() - 1 ? upload::Outcome::CloseRefused
                                          : upload::Outcome::DataRefused;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t Head = 5;
    if (size < Head) {
        return 0;
    }
    const Upload upload = uploadIn({data, size});
    std::size_t refused = 0;
    while (refused < upload.frames() && upload.answer(refused) != 1) {
        ++refused;
    }

    CommandFrame frame(Command::Upload);
    std::size_t sent = 0;
    const auto outcome = upload::transfer(
        upload.name,
        {reinterpret_cast<const std::uint8_t*>(upload.content.data()), upload.content.size()},
        frame, [&](const CommandFrame& next) {
            EXPECT(sent < upload.frames());
            EXPECT(next.bytes() == expectedFrame(upload, sent));
            return upload::accepts(upload.answer(sent++));
        });
    EXPECT(sent == std::min(refused + 1, upload.frames()));
    EXPECT(outcome == expectedOutcome(upload, refused));
    return 0;
}
