#include "tests/device/faults/captures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "device/interfaceUSB.h"
#include "tests/device/capture/naive_decoder.h"
#include "tests/support/capture_rounds.h"
#include "tests/support/odd_files.h"
#include "tests/support/temporary_folder.h"

namespace faults {

namespace {

using naive::Bytes;
using simulator::Board;
using support::Lines;

constexpr int Rounds = 2;
constexpr std::size_t PlanesOffset = 4;

struct CaptureKind {
    const char* name;
    int mode;
    Board board;
    std::size_t replyLength;
    Lines round;
};

const std::vector<CaptureKind>& captureKinds() {
    static const std::vector<CaptureKind> all = {
        {"receiveDump",
         1,
         Board::Standard,
         1541,
         {"out 0x01 64 2000ms #0: 02 C3 E8 03 00*60", "in 0x81 1541 10000ms #0"}},
        {"receiveDump0",
         0,
         Board::Standard,
         5,
         {"out 0x01 64 2000ms #0: 02 C3 E8 00*61", "in 0x81 5 10000ms #0"}},
        {"receiveDump6",
         6,
         Board::Standard,
         6149,
         {"out 0x01 64 2000ms #0: 02 C3 E8 0C 00*60", "in 0x81 6149 10000ms #0"}},
        {"receiveDumpXl",
         1,
         Board::Xl,
         3077,
         {"out 0x01 64 2000ms #0: 02 C3 E8 02 00*60", "in 0x81 3077 10000ms #0"}},
    };
    return all;
}

std::filesystem::path folder() {
    static const support::TemporaryFolder made(support::InMemory);  // For thousands of captures.
    return made.path() / "dumps";
}

/// The content of the capture's file with this ending.
std::string content(const std::string& ending) {
    std::string all;
    for (const auto& entry : std::filesystem::directory_iterator(folder())) {
        if (entry.path().string().ends_with(ending)) {
            const Bytes bytes = support::readFile(entry.path());
            all.append(bytes.begin(), bytes.end());
        }
    }
    return all;
}

/// The replies that were taken for frames. What does not arrive stays as it was in the last one.
std::vector<Bytes> repliedFrames(const CaptureKind& kind) {
    constexpr int RequestLength = 64;
    std::vector<Bytes> frames;
    Bytes buffer(kind.replyLength);
    bool asked = false;
    for (const simulator::Call& call : simulator::Bus::instance().calls()) {
        if (call.endpoint == 0x81 && asked) {
            std::ranges::copy(call.data, buffer.begin());
            if (call.result == 0) {
                frames.push_back(buffer);
            }
        }
        asked = call.endpoint == 0x01 && call.length == RequestLength;
    }
    return frames;
}

/// The frames in the files, each compared with what came over the wire.
int capturedFrames(const CaptureKind& kind) {
    const std::vector<Bytes> frames = repliedFrames(kind);
    const std::string text = content(".txt");
    std::uint32_t start = 0;
    if (!frames.empty() && text.size() > 10) {
        start = static_cast<std::uint32_t>(std::stoul(text.substr(2, 8), nullptr, 16)) -
                naive::clockOf(frames.front());
    }
    std::string expectedText;
    Bytes expectedRaw = naive::hasRawFile(kind.mode) ? naive::rawHeader(kind.mode) : Bytes{};
    for (const Bytes& frame : frames) {
        const Bytes planes(frame.begin() + PlanesOffset, frame.end());
        const std::uint32_t stamp = start + naive::clockOf(frame);
        expectedText += naive::text(kind.mode, kind.board == Board::Xl, stamp, planes);
        if (naive::hasRawFile(kind.mode)) {
            std::ranges::copy(naive::raw(kind.mode, stamp, planes),
                              std::back_inserter(expectedRaw));
        }
    }
    EXPECT_EQ(text, expectedText);
    EXPECT_EQ(content(".raw"), std::string(expectedRaw.begin(), expectedRaw.end()));
    return static_cast<int>(frames.size());
}

/// Ends from a pending event, as the check box of the window ends it.
void capture(const CaptureKind& kind) {
    std::filesystem::remove_all(folder());
    std::filesystem::create_directory(folder());
    dump_running = true;
    usb.receiveDump(static_cast<unsigned char>(kind.mode), wxString::FromUTF8(folder().string()));
    dump_running = false;
}

Operation dump(const CaptureKind& kind) {
    return {.name = kind.name,
            .run =
                [&kind] {
                    support::CaptureRounds rounds;
                    rounds.stopAfter(Rounds);
                    capture(kind);
                    return std::nullopt;
                },
            .transfers = support::joined({kind.round, kind.round}),
            .done = [&kind](const simulator::Controller&) { return capturedFrames(kind); },
            .whole = Rounds,
            .board = kind.board};
}

}  // namespace

void captureUntilEnded() { capture(captureKinds().front()); }

std::vector<Operation> captures() {
    std::vector<Operation> all;
    std::ranges::transform(captureKinds(), std::back_inserter(all), dump);
    return all;
}

}  // namespace faults
