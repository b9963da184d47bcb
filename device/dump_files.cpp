#include "device/dump_files.h"

#include <array>
#include <cstdio>
#include <ctime>

#include "device/dump_format.h"
#include "device/file_stream.h"

namespace dump {

namespace {

/// `pattern` filled in with the time, or nothing.
std::string nameAt(std::time_t time, const char* pattern) {
    std::array<char, 35> name{};
    const std::tm* const utc = std::gmtime(&time);
    if (utc == nullptr || std::strftime(name.data(), name.size(), pattern, utc) == 0) {
        return {};
    }
    return name.data();
}

/// Opens, appends, closes. One write for a block: what is there is there whole. An empty block
/// opens all the same: the file is there, and its writing was tried.
bool append(const std::string& path, std::string_view block) {
    // Binary for the text file too: its line ends are CR LF on every system.
    const file::Stream stream = file::openAny(path.c_str(), "ab");
    if (!stream) {
        return false;
    }
    std::setvbuf(stream.get(), nullptr, _IONBF, 0);
    return block.empty() ||
           std::fwrite(block.data(), 1, block.size(), stream.get()) == block.size();
}

}  // namespace

Files::Files(const std::string& folder, const InputModeInfo& mode) : text_(folder), raw_(folder) {
    const std::time_t now = std::time(nullptr);
    // A folder whose name the C library cannot express is empty here: it must not become the root.
    if (now == static_cast<std::time_t>(-1) || folder.empty()) {
        return;
    }
    text_ += nameAt(now, "/%d%m%y_%H%M%S_lumadot_dump.txt");
    if (mode.rawFile) {
        hasRaw_ = true;
        raw_ += nameAt(now, "/%d%m%y_%H%M%S_lumadot_dump.raw");
        appendRaw(rawHeader(mode.capturePlanes));
    }
}

bool Files::appendRaw(std::span<const std::uint8_t> block) const {
    return append(raw_, {reinterpret_cast<const char*>(block.data()), block.size()});
}

bool Files::appendText(std::string_view block) const { return append(text_, block); }

}  // namespace dump
