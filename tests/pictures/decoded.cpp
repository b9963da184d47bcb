#include "tests/pictures/decoded.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <random>
#include <sstream>
#include <string>

#include "display/painter.h"

#ifdef _WIN32
#define popen _popen
#define pclose _pclose
#endif

namespace decoded {

namespace {

std::string outputOf(const std::string& command) {
    std::string output;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::vector<char> buffer(1U << 16U);
    for (std::size_t held = 1; held > 0;) {
        held = std::fread(buffer.data(), 1, buffer.size(), pipe.get());
        output.append(buffer.data(), held);
    }
    return output;
}

}  // namespace

Image image(const std::filesystem::path& path) {
    std::istringstream output(outputOf(LUMADOT_DECODER " '" + path.string() + "'"));
    Image image;
    std::size_t frames = 0;
    if (!(output >> image.width >> image.height >> frames >> image.repeats)) {
        ADD_FAILURE() << path << " cannot be decoded";
        return {};
    }
    for (std::size_t frame = 0; frame < frames; ++frame) {
        int time = 0;
        output >> time;
        output.ignore();
        Bytes pixels(3 * image.width * image.height);
        output.read(reinterpret_cast<char*>(pixels.data()),
                    static_cast<std::streamsize>(pixels.size()));
        image.timesMs.push_back(time);
        image.frames.push_back(std::move(pixels));
    }
    EXPECT_TRUE(output) << path << " has too little in it";
    return image;
}

pictures::Sequence chanceFrames(std::vector<unsigned> seeds, std::vector<std::uint32_t> stampsMs,
                                std::size_t columns, std::size_t rows) {
    pictures::Sequence sequence;
    sequence.count = seeds.size();
    sequence.columns = columns;
    sequence.rows = rows;
    sequence.spanMs = stampsMs.empty() ? 0 : stampsMs.back() - stampsMs.front();
    sequence.read = [=](std::uint64_t number, std::vector<std::uint8_t>& entries) {
        std::mt19937 random(seeds.at(number));
        entries.resize(columns * rows);
        std::ranges::generate(entries, [&] { return static_cast<std::uint8_t>(random() % 16); });
        return stampsMs.empty() ? 0 : stampsMs.at(number);
    };
    return sequence;
}

Bytes painted(const pictures::Sequence& sequence, std::uint64_t number, const display::Look& look) {
    std::vector<std::uint8_t> entries;
    sequence.read(number, entries);
    const display::Painter painter(look);
    Bytes picture(painter.pictureBytes(sequence.columns, sequence.rows));
    painter.paint(entries, sequence.columns, picture);
    return picture;
}

display::Look chanceLook(std::size_t scale, display::Dots dots) {
    display::Look look;
    std::mt19937 random(9);
    std::ranges::generate(look.palette, [&] { return static_cast<std::uint8_t>(random()); });
    std::copy_n(look.palette.begin() + 9, 3, look.palette.begin() + 21);  // Entries 3 and 7.
    look.brightness = 180;
    look.scale = scale;
    look.dots = dots;
    return look;
}

}  // namespace decoded
