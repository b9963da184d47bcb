// Replies that are late, short, wrong or missing.

#include <libusb.h>

#include <random>

#include "tests/device/capture/capture_link.h"

namespace {

using capture::Bytes;
using capture::CaptureLink;
using capture::Frame;

using Replies = CaptureLink;

TEST_F(Replies, ReadThatTimesOutWritesNothingButMakesTheTextFile) {
    bus.plug({});  // Never accepts and never answers.
    run(1, 3);
    EXPECT_EQ(text(), "");
    EXPECT_EQ(support::byteText(raw()), "52 41 57 00 01 80 20 03");
    expectReleased();
}

TEST_F(Replies, FramesThatDoNotComeAreLeftOutAndTheOthersAreWritten) {
    plug(1);
    bus.inject({.function = "libusb_bulk_transfer",
                .nth = 2,
                .result = LIBUSB_ERROR_TIMEOUT,
                .endpoint = 0x81});
    run(1, 4);
    const std::vector<Frame> frames = repliedFrames();
    ASSERT_EQ(frames.size(), 3U);
    const std::uint32_t start = startOf(frames);
    expectText(1, false, frames, start);
    expectRaw(1, frames, start);
}

TEST_F(Replies, FrameIsReadEvenIfItsRequestFailed) {
    plug(3);
    failTransfer(0x01, LIBUSB_ERROR_TIMEOUT);
    answer({1, 0, 0, 0, 0x01});
    run(3, 1);
    const std::vector<Frame> frames = {{1, {0x01}}};
    expectText(3, false, frames, startOf(frames));
}

TEST_F(Replies, PositiveResultIsNoFrame) {
    plug(3);
    failTransfer(0x81, 1);
    run(3, 1);
    EXPECT_EQ(text(), "");
}

TEST_F(Replies, BytesThatDoNotArriveStayFromTheFrameBefore) {
    plug(1);
    Bytes whole = {4, 3, 2, 1};
    whole.resize(3 * 512 + 5, 0x96);
    answers({whole, {5, 3, 2, 1, 0xFF, 0x00}, {6, 3}, {}});
    run(1, 4);

    Bytes mixed(3 * 512 + 1, 0x96);
    const Bytes first = mixed;
    mixed[0] = 0xFF;
    mixed[1] = 0x00;
    const std::vector<Frame> frames = {
        {0x01020304, first}, {0x01020305, mixed}, {0x01020306, mixed}, {0x01020306, mixed}};
    const std::uint32_t start = startOf(frames);
    expectText(1, false, frames, start);
    expectRaw(1, frames, start);
}

TEST_F(Replies, BytesOfAFailedReadStayForTheNextOne) {
    plug(3);
    bus.inject({.function = "libusb_bulk_transfer",
                .result = LIBUSB_ERROR_IO,
                .reply = Bytes{9, 0, 0, 0, 0x0F},
                .endpoint = 0x81});
    bus.inject({.function = "libusb_bulk_transfer",
                .nth = 2,
                .reply = Bytes{10, 0, 0, 0},
                .endpoint = 0x81});
    run(3, 2);
    const std::vector<Frame> frames = {{10, {0x0F}}};
    expectText(3, false, frames, startOf(frames));
}

TEST_F(Replies, FirstFrameStartsFromZeros) {
    plug(10);
    answer({});
    run(10, 1);
    const std::vector<Frame> frames = {{0, {}}};
    const std::uint32_t start = startOf(frames);
    expectText(10, false, frames, start);
    expectRaw(10, frames, start);
}

TEST_F(Replies, StoppingWhileAReadIsPendingEndsTheCaptureAfterThatRead) {
    plug(2);
    rounds.onRead([](int frame) { dump_running = dump_running && frame < 2; });
    run(2);
    EXPECT_EQ(repliedFrames().size(), 2U);
    EXPECT_EQ(text().size(), 2 * (12 + 32 * 130 + 2U));
    expectReleased();
}

TEST_F(Replies, ControllerThatIsPulledOutWritesNothingMore) {
    plug(1);
    rounds.after(2, [&] { bus.unplug(0); });
    run(1, 6);
    EXPECT_EQ(text().size(), 2 * (12 + 32 * 130 + 2U));
    EXPECT_EQ(bus.openHandles(), 0);
}

/// Error codes, lengths, and claimed counts that do not fit, at every call.
class HostileController : public CaptureLink, public testing::WithParamInterface<int> {};

TEST_P(HostileController, IsSurvivedAndLeavesWholeFrames) {
    std::mt19937 random(static_cast<unsigned>(GetParam()));
    const bool xl = random() % 2 == 0;
    const int mode = naive::allModes()[random() % naive::allModes().size()];
    plug(mode, xl ? Board::Xl : Board::Standard);
    rounds.onRead([&](int) {
        Bytes reply(random() % 8000);
        std::ranges::generate(reply, [&] { return static_cast<std::uint8_t>(random()); });
        simulator::Fault fault{.function = "libusb_bulk_transfer", .reply = reply};
        fault.transferred = static_cast<int>(random() % 100000) - 10;
        if (random() % 4 == 0) {
            fault.result = -static_cast<int>(random() % 100);
        }
        bus.inject(fault);
    });
    run(mode, 50);

    const std::size_t block = xl ? 12 + 64 * 194 + 2 : 12 + 32 * 130 + 2;
    EXPECT_EQ(text().size() % block, 0U);
    EXPECT_GT(text().size(), 0U);
    if (naive::hasRawFile(mode)) {
        const auto frame = 4 + static_cast<std::size_t>(naive::planes(mode)) * 512;
        EXPECT_EQ(raw().size() - 8, text().size() / block * frame);
    }
    EXPECT_EQ(bus.openHandles(), 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, HostileController, testing::Range(1, 31));

}  // namespace
