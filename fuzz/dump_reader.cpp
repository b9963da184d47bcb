#include "fuzz/dump_reader.h"

#include <memory>

#include "fuzz/expect.h"

namespace fuzz {

namespace {

/// What a dump holds, read piece by piece.
struct Found {
    std::vector<recording::Piece> frames;
    std::vector<recording::Damage> damages;
};

Found readPieces(recording::Source& source, recording::Format& format) {
    recording::Window window(source, recording::SmallestWindow);
    Found found;
    for (std::uint64_t at = 0; at < source.size();) {
        const recording::Piece piece = format.next(window, at, source.size());
        if (piece.frame) {
            found.frames.push_back(piece);
        }
        if (piece.damage) {
            EXPECT(piece.damage->offset >= at && piece.damage->offset <= source.size());
            found.damages.push_back(*piece.damage);
        }
        if (piece.last) {
            break;
        }
        EXPECT(piece.next > at);
        at = piece.next;
    }
    return found;
}

}  // namespace

void readBothWays(const std::vector<std::uint8_t>& bytes, recording::Format& format) {
    recording::Recording dump(std::make_unique<recording::MemorySource>(bytes), "input");
    EXPECT(dump.extend());
    recording::MemorySource source(bytes);
    const Found found = readPieces(source, format);
    EXPECT(dump.frames() == found.frames.size());
    EXPECT(dump.damages() == found.damages);
    recording::Frame frame;
    for (std::uint64_t number = 0; number < dump.frames(); ++number) {
        dump.read(number, frame);
        EXPECT(frame.offset == found.frames[number].offset);
        EXPECT(frame.stampMs == found.frames[number].stampMs);
        EXPECT(frame.digits.empty() ||
               frame.digits.size() == dump.display()->rows * dump.display()->columns());
    }
    if (dump.frames() > 0) {
        EXPECT(dump.elapsedMs(dump.frames() - 1) == dump.summary().durationMs);
    }
}

}  // namespace fuzz
