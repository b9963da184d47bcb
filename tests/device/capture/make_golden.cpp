// Writes the golden files with the naive decoder: make_golden FOLDER. Each holds one frame: the
// controller's reply, and the blocks that it must become in the dump files.

#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>

#include "tests/device/capture/naive_decoder.h"

namespace {

using naive::Bytes;

constexpr std::uint32_t Stamp = 0xA1B2C3D4;

/// Bytes as the pages write them, runs of eight and more counted, `width` words a line.
std::string notation(const Bytes& bytes) {
    std::string text;
    int words = 0;
    for (std::size_t i = 0; i < bytes.size();) {
        std::size_t run = 1;
        while (i + run < bytes.size() && bytes[i + run] == bytes[i]) {
            ++run;
        }
        run = run < 8 ? 1 : run;
        char word[16];
        std::snprintf(word, sizeof word, run > 1 ? "%02X*%zu" : "%02X", bytes[i], run);
        text += (words == 0 ? "" : words % 32 == 0 ? "\n" : " ") + std::string(word);
        i += run;
        ++words;
    }
    return text;
}

/// The first two rows show every number of set bits, and every number in four bits; the last dot is
/// lit in all planes.
Bytes reply(int planes, bool xl) {
    const std::size_t rowBytes = xl ? 24 : 16;
    const std::size_t planeBytes = rowBytes * (xl ? 64 : 32);
    Bytes bytes = {0xD4, 0xC3, 0xB2, 0xA1};
    for (int plane = 0; plane < planes; ++plane) {
        Bytes rows(planeBytes);
        for (int dot = 0; dot < 16; ++dot) {
            const auto byte = static_cast<std::size_t>(dot / 8);
            const auto mask = static_cast<std::uint8_t>(1 << dot % 8);
            rows[byte] |= dot > plane ? mask : 0;
            rows[rowBytes + byte] |= (dot >> plane % 4 & 1) != 0 ? mask : 0;
        }
        rows.back() = 0x80;
        bytes.insert(bytes.end(), rows.begin(), rows.end());
    }
    bytes.push_back(0);
    return bytes;
}

void write(std::ofstream& file, const char* name, const Bytes& bytes) {
    file << "```hex " << name << "\n" << notation(bytes) << "\n```\n";
}

void writeGolden(const std::string& path, int mode, bool xl) {
    const Bytes bytes = reply(xl ? 2 : naive::planes(mode), xl);
    const Bytes planeData(bytes.begin() + 4, bytes.end());
    const std::string text = naive::text(mode, xl, Stamp, planeData);
    std::ofstream file(path);
    write(file, "reply", bytes);
    write(file, "text", Bytes(text.begin(), text.end()));
    if (naive::hasRawFile(mode)) {
        write(file, "raw-header", naive::rawHeader(mode));
        write(file, "raw", naive::raw(mode, Stamp, planeData));
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: make_golden FOLDER\n";
        return 1;
    }
    const std::string folder = argv[1];
    for (const int mode : naive::allModes()) {
        writeGolden(folder + "/standard_" + std::to_string(mode) + ".md", mode, false);
    }
    for (const int mode : {2, 6, 8}) {
        writeGolden(folder + "/xl_" + std::to_string(mode) + ".md", mode, true);
    }
}
