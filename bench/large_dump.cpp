#include "bench/large_dump.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <vector>

#include "device/dump_format.h"
#include "device/input_mode.h"

namespace bench {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t Different = 64;

Bytes randomBytes(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    Bytes bytes(size);
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random()); });
    return bytes;
}

class Frames {
public:
    explicit Frames(const DumpKind& kind)
        : kind_(kind),
          encoder_(kind.xl ? dump::XlDots : inputMode(InputMode::Stern).dots,
                   kind.xl ? dump::XlDisplay : dump::StandardDisplay) {
        constexpr std::size_t Enough = 12 * dump::RawPlaneBytes;
        for (unsigned i = 0; i < Different; ++i) {
            planes_.push_back(randomBytes(Enough, kind.equal ? 0 : i));
        }
    }

    Bytes next() {
        const Bytes& planes = planes_[number_ % Different];
        const auto stamp = static_cast<std::uint32_t>(0x4D5A2F11 + 16 * number_++);
        if (kind_.rawPlanes != 0) {
            return dump::rawBlock(stamp, kind_.rawPlanes, planes);
        }
        const auto block = encoder_.encode(stamp, planes);
        return {block.begin(), block.end()};
    }

private:
    DumpKind kind_;
    dump::TextEncoder encoder_;
    std::vector<Bytes> planes_;
    std::uint64_t number_ = 0;
};

}  // namespace

std::uint64_t makeLargeDump(const std::filesystem::path& path, const DumpKind& kind,
                            std::uint64_t size) {
    std::ofstream file(path, std::ios::binary);
    const auto put = [&](const auto& bytes) {
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    };
    if (kind.rawPlanes != 0) {
        put(dump::rawHeader(kind.rawPlanes));
    }
    Frames frames(kind);
    std::uint64_t count = 0;
    for (std::uint64_t written = 0; written < size; ++count) {
        const Bytes frame = frames.next();
        put(frame);
        written += frame.size();
    }
    if (!file.flush()) {
        std::printf("%s cannot be written\n", path.c_str());
        std::exit(EXIT_FAILURE);
    }
    return count;
}

}  // namespace bench
