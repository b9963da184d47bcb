// An animated GIF of 1,000 frames of 128 x 32 dots at scale 8, beside the library's encoder alone:
// what was written is decoded, and the same frames are encoded again into nothing, in turns.
//
// Exit code 1: the encoder is under half of the work.

#include <gif_lib.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "bench/report.h"
#include "pictures/gif.h"

namespace {

constexpr std::size_t Columns = 128;
constexpr std::size_t Rows = 32;
constexpr std::uint64_t Frames = 1000;
constexpr int Rounds = 3;
constexpr double WantedShare = 0.5;

const std::filesystem::path File = "/dev/shm/lumadot_pictures_bench.gif";

[[noreturn]] void fail(const char* what) {
    std::printf("FAIL  %s\n", what);
    std::exit(EXIT_FAILURE);
}

pictures::Sequence sequenceOf(void (*draw)(std::uint64_t number,
                                           std::vector<std::uint8_t>& entries)) {
    constexpr std::uint32_t StepMs = 20;
    pictures::Sequence sequence;
    sequence.count = Frames;
    sequence.columns = Columns;
    sequence.rows = Rows;
    sequence.spanMs = StepMs * (Frames - 1);
    sequence.read = [draw](std::uint64_t number, std::vector<std::uint8_t>& entries) {
        entries.assign(Columns * Rows, 0);
        draw(number, entries);
        return static_cast<std::uint32_t>(StepMs * number);
    };
    return sequence;
}

/// Every dot by chance: the most that there can be to do.
void drawChance(std::uint64_t number, std::vector<std::uint8_t>& entries) {
    std::minstd_rand random(static_cast<unsigned>(number + 1));
    std::ranges::generate(entries, [&] { return static_cast<std::uint8_t>(random() % 16); });
}

/// A score that stands, and a ball that crosses the display.
void drawScene(std::uint64_t number, std::vector<std::uint8_t>& entries) {
    for (std::size_t x = 20; x < 108; ++x) {
        entries[4 * Columns + x] = entries[8 * Columns + x] = static_cast<std::uint8_t>(x % 16);
    }
    const std::size_t left = number % (Columns - 8);
    for (std::size_t dot = 0; dot < 64; ++dot) {
        entries[(14 + dot / 8) * Columns + left + dot % 8] = 15;
    }
}

/// The frames of a GIF, decoded.
class Decoded {
public:
    explicit Decoded(const std::filesystem::path& path)
        : gif_(DGifOpenFileName(path.c_str(), nullptr)) {
        if (gif_ == nullptr || DGifSlurp(gif_) != GIF_OK) {
            fail("the GIF cannot be decoded");
        }
    }
    ~Decoded() { DGifCloseFile(gif_, nullptr); }
    Decoded(const Decoded&) = delete;
    Decoded& operator=(const Decoded&) = delete;

    int frames() const { return gif_->ImageCount; }

    void encode() const {
        const auto ignore = [](GifFileType*, const GifByteType*, int length) { return length; };
        GifFileType* const out = EGifOpen(nullptr, ignore, nullptr);
        if (out == nullptr) {
            fail("the encoder does not start");
        }
        out->SWidth = gif_->SWidth;
        out->SHeight = gif_->SHeight;
        out->SColorResolution = gif_->SColorResolution;
        out->SColorMap = GifMakeMapObject(gif_->SColorMap->ColorCount, gif_->SColorMap->Colors);
        out->ImageCount = gif_->ImageCount;
        out->SavedImages = gif_->SavedImages;
        if (EGifSpew(out) != GIF_OK) {
            fail("the encoder gives up");
        }
    }

private:
    GifFileType* gif_;
};

bool judge(const char* name, const pictures::Sequence& sequence) {
    display::Look look;
    look.scale = 8;
    for (std::size_t i = 0; i < look.palette.size(); ++i) {
        look.palette[i] = static_cast<std::uint8_t>(i / 3 * 17);
    }
    double own = 1e9;
    double encoder = 1e9;
    for (int round = 0; round < Rounds; ++round) {
        own = std::min(own, bench::fastest(1, [&] { pictures::writeGif(sequence, look, File); }));
        const Decoded decoded(File);
        if (decoded.frames() != static_cast<int>(Frames)) {
            fail("frames are missing");
        }
        encoder = std::min(encoder, bench::fastest(1, [&] { decoded.encode(); }));
    }
    std::printf("%s: 1,000 frames in %.3f s, %.1f MiB; the encoder alone %.3f s\n", name, own,
                static_cast<double>(std::filesystem::file_size(File)) / (1U << 20U), encoder);
    return bench::atLeast(std::string(name) + ": the encoder's share", encoder / own, WantedShare);
}

}  // namespace

int main() {
    bool good = judge("every dot by chance", sequenceOf(drawChance));
    good &= judge("a scene", sequenceOf(drawScene));
    std::filesystem::remove(File);
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
