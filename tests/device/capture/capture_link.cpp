#include "tests/device/capture/capture_link.h"

#include <algorithm>

namespace capture {

std::shared_ptr<simulator::Controller> CaptureLink::plug(int mode, Board board) {
    simulator::ControllerOptions options;
    options.board = board;
    options.settings[0] = static_cast<std::uint8_t>(mode);
    return bus.plugController(options, board == Board::Xl ? "LUMADOT XL" : "LUMADOT");
}

void CaptureLink::run(int mode, const std::filesystem::path& into) {
    dump_running = true;
    usb.receiveDump(static_cast<unsigned char>(mode), wxString::FromUTF8(into.string()));
    dump_running = false;
}

void CaptureLink::answers(const std::vector<Bytes>& replies) {
    int nth = 0;
    for (const Bytes& reply : replies) {
        bus.inject(
            {.function = "libusb_bulk_transfer", .nth = ++nth, .reply = reply, .endpoint = 0x81});
    }
}

std::vector<Frame> CaptureLink::repliedFrames() const {
    std::vector<Frame> frames;
    bool asked = false;
    for (const simulator::Call& call : bus.calls()) {
        if (call.endpoint == 0x81 && asked && call.result == 0 && call.data.size() >= 4) {
            const Bytes& data = call.data;
            frames.push_back({naive::clockOf(data), {data.begin() + 4, data.end()}});
        }
        asked = call.endpoint == 0x01 && call.length == 64;
    }
    return frames;
}

std::vector<std::string> CaptureLink::fileNames() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(place)) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

std::string CaptureLink::content(const std::string& ending) const {
    std::vector<std::string> names = fileNames();
    std::erase_if(names, [&](const std::string& name) { return !name.ends_with(ending); });
    if (names.size() != 1) {
        ADD_FAILURE() << names.size() << " files *" << ending;
        return {};
    }
    const Bytes bytes = support::readFile(place / names.front());
    return {bytes.begin(), bytes.end()};
}

Bytes CaptureLink::raw() const {
    const std::string bytes = content(".raw");
    return {bytes.begin(), bytes.end()};
}

std::string CaptureLink::textOf(int mode, bool xl, const std::vector<Frame>& frames,
                                std::uint32_t start) {
    std::string text;
    for (const Frame& frame : frames) {
        text += naive::text(mode, xl, start + frame.clock, frame.planes);
    }
    return text;
}

Bytes CaptureLink::rawOf(int mode, const std::vector<Frame>& frames, std::uint32_t start) {
    Bytes raw = naive::rawHeader(mode);
    for (const Frame& frame : frames) {
        const Bytes block = naive::raw(mode, start + frame.clock, frame.planes);
        raw.insert(raw.end(), block.begin(), block.end());
    }
    return raw;
}

std::uint32_t CaptureLink::startOf(const std::vector<Frame>& frames) const {
    const std::string content = text();
    if (frames.empty() || content.size() < 12) {
        ADD_FAILURE() << "no frame in the text file";
        return 0;
    }
    const auto stamp = static_cast<std::uint32_t>(std::stoul(content.substr(2, 8), nullptr, 16));
    return stamp - frames.front().clock;
}

int openFilesIn(const std::filesystem::path& folder) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code closed;
        const auto target = std::filesystem::read_symlink(entry.path(), closed);
        count += !closed && target.string().starts_with(folder.string()) ? 1 : 0;
    }
    return count;
}

}  // namespace capture
