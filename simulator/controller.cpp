#include "simulator/controller.h"

#include <algorithm>
#include <utility>

namespace simulator {

namespace {

constexpr std::size_t FrameSize = 2052;
constexpr std::size_t DumpRequestSize = 64;
constexpr std::size_t TextReplySize = 63;
constexpr std::size_t FirmwareSize = 6;
constexpr std::size_t BlockLimit = 512;
constexpr std::uint8_t Refusal = 0x01;
constexpr std::uint8_t XlPlanes = 2;

/// Fills what a reply carries without meaning, so that a client that reads it is found out.
constexpr std::uint8_t Meaningless = 0xA5;

constexpr Palette Vga = {0,   0,   0,   128, 0,   0,   255, 0,   0,   255, 0,   255,
                         0,   128, 128, 0,   128, 0,   0,   255, 0,   0,   255, 255,
                         0,   0,   128, 128, 0,   128, 0,   0,   255, 64,  64,  64,
                         128, 128, 128, 128, 128, 0,   255, 255, 0,   255, 255, 255};

/// Red, green and blue step from one shade to the next, for the presets 1..8.
constexpr std::uint8_t Ramps[8][3] = {{17, 0, 0},  {0, 17, 0},  {0, 0, 17},   {17, 0, 17},
                                      {0, 17, 17}, {17, 17, 0}, {17, 17, 17}, {17, 9, 0}};

bool isFrame(std::span<const std::uint8_t> packet) {
    return packet.size() == FrameSize && packet[0] == 0x81 && packet[1] == 0xC3 &&
           packet[2] == 0xE7;
}

bool isDumpRequest(std::span<const std::uint8_t> packet) {
    return packet.size() == DumpRequestSize && packet[0] == 0x02 && packet[1] == 0xC3 &&
           packet[2] == 0xE8;
}

/// Machines that light a dot in as many planes as it is bright, rather than number its shade.
bool countsPlanes(std::uint8_t inputMode, std::uint8_t planes) {
    constexpr std::uint8_t Capcom = 9;
    constexpr std::uint8_t AlvinG = 10;
    return planes == 3 || planes > 4 || inputMode == Capcom || inputMode == AlvinG;
}

DotCount sizeOf(Board board) { return board == Board::Xl ? DotCount{192, 64} : DotCount{128, 32}; }

Animation machineFor(Board board) {
    const DotCount size = sizeOf(board);
    return {static_cast<int>(size.columns), static_cast<int>(size.rows)};
}

}  // namespace

std::optional<Palette> preset(std::uint8_t index) {
    if (index == 0) {
        return Vga;
    }
    if (index > std::size(Ramps)) {
        return std::nullopt;
    }
    Palette palette;
    for (std::size_t i = 0; i < palette.size(); ++i) {
        palette[i] = static_cast<std::uint8_t>(i / 3 * Ramps[index - 1][i % 3]);
    }
    return palette;
}

Controller::Controller(ControllerOptions options)
    : options_(std::move(options)),
      store_(options_.store),
      animation_(machineFor(options_.board)),
      stored_(options_.settings),
      storedPalette_(preset(options_.settings[PaletteIndexByte]).value_or(Vga)),
      files_(store_.uploads()) {
    if (!options_.clock) {
        options_.clock = [] { return std::uint64_t{0}; };
    }
    store_.load("settings", stored_);
    store_.load("palette", storedPalette_);
    working_ = stored_;
    palette_ = storedPalette_;
}

void Controller::receive(std::span<const std::uint8_t> packet) {
    if (restarting()) {
        ++ignored_;
        return;
    }
    if (isFrame(packet) && packet[3] == 0xFF) {
        command(packet);
    } else if (isFrame(packet) && packet[3] == 0x00) {
        image_.emplace(packet.begin(), packet.end());
    } else if (isDumpRequest(packet)) {
        dumpRequest(packet[3]);
    } else {
        ++ignored_;
    }
}

void Controller::command(std::span<const std::uint8_t> packet) {
    switch (packet[4]) {
        case 0x00:
            return restart();
        case 0x01:
            return store();
        case 0x02:
            working_[InputModeByte] = packet[5];
            return image_.reset();
        case 0x03:
            return selectPreset(packet[5]);
        case 0x04:
            return loadPalette(packet);
        case 0x08:
            working_[BrightnessByte] = packet[17];
            return;
        case 0x0A:
            return uploadFrame(packet);
        case 0x10:
            return sendSettings();
        case 0x11:
            return sendUniqueId();
        case 0x12:
            return storePalette();
        case 0x20:
            std::copy_n(packet.begin() + 5, working_.size(), working_.begin());
            return image_.reset();
        default:
            ++ignored_;
    }
}

/// A restart brings the selected preset back, and the palette that was loaded and not stored is
/// lost.
void Controller::store() {
    stored_ = working_;
    store_.save("settings", stored_);
    if (paletteIsPreset_) {
        storePalette();
    }
}

void Controller::storePalette() {
    storedPalette_ = palette_;
    store_.save("palette", storedPalette_);
}

void Controller::restart() {
    working_ = stored_;
    palette_ = storedPalette_;
    paletteIsPreset_ = false;
    reply_.reset();
    openName_.reset();
    image_.reset();
    silentUntil_ = options_.clock() + options_.restartTime;
}

DotCount Controller::size() const { return sizeOf(options_.board); }

std::uint64_t Controller::restartDelay() const {
    const std::uint64_t now = options_.clock();
    return silentUntil_ > now ? silentUntil_ - now : 0;
}

void Controller::selectPreset(std::uint8_t index) {
    working_[PaletteIndexByte] = index;
    if (const auto chosen = preset(index)) {
        palette_ = *chosen;
        paletteIsPreset_ = true;
    }
}

void Controller::loadPalette(std::span<const std::uint8_t> packet) {
    if (packet[5] != 0 || packet[6] != 1) {
        ++ignored_;
        return;
    }
    std::copy_n(packet.begin() + 7, palette_.size(), palette_.begin());
    paletteIsPreset_ = false;
}

void Controller::uploadFrame(std::span<const std::uint8_t> packet) {
    const bool refuse = refuseUploadFrame_ == 1;
    refuseUploadFrame_ = std::max(refuseUploadFrame_ - 1, 0);
    const bool accepted = !refuse && takeUpload(packet);
    if (!accepted) {
        openName_.reset();
    }
    reply({accepted ? acceptByte_ : Refusal}, options_.clock());
}

bool Controller::takeUpload(std::span<const std::uint8_t> packet) {
    const auto phase = packet[5];
    if (phase == 0x00) {
        const auto name = packet.subspan(6);
        openName_.emplace(name.begin(), std::find(name.begin(), name.end(), 0));
        openData_.clear();
        return true;
    }
    if (!openName_) {
        return false;
    }
    if (phase == 0x01) {
        const std::size_t length = packet[6] * std::size_t{256} + packet[7];
        if (length > BlockLimit) {
            return false;
        }
        const auto block = packet.subspan(8, length);
        openData_.insert(openData_.end(), block.begin(), block.end());
        return true;
    }
    if (phase == 0xFF) {
        store_.saveUpload(*openName_, openData_);
        files_[*openName_] = std::exchange(openData_, {});
        openName_.reset();
        return true;
    }
    return false;
}

void Controller::sendSettings() {
    if (options_.layout == SettingsLayout::Older) {
        Packet bytes(TextReplySize, 0);
        bytes[0] = working_[InputModeByte];
        bytes[1] = working_[BrightnessByte];
        bytes[2] = working_[EnhancerByte];
        bytes[3] = working_[PaletteIndexByte];
        return reply(std::move(bytes), options_.clock());
    }
    Packet bytes(TextReplySize, Meaningless);
    std::string firmware = options_.firmware;
    firmware.resize(FirmwareSize, '\0');
    std::copy(firmware.begin(), firmware.end(), bytes.begin() + 4);
    std::copy(working_.begin(), working_.end(), bytes.begin() + 4 + FirmwareSize);
    reply(std::move(bytes), options_.clock());
}

void Controller::sendUniqueId() {
    Packet bytes(TextReplySize, 0);
    const std::size_t length = std::min(options_.uniqueId.size(), TextReplySize - 1);
    std::copy_n(options_.uniqueId.begin(), length, bytes.begin());
    reply(std::move(bytes), options_.clock());
}

void Controller::dumpRequest(std::uint8_t planes) {
    const std::uint64_t now = options_.clock();
    std::uint64_t ready = now;
    if (replyDelay() > 0) {
        ready = replyReady_;  // Asked again while the frame is still to come.
    } else if (frames_ > 0) {
        ready = std::max(now, std::min(lastFrame_, now) + options_.frameInterval);
    }
    lastFrame_ = ready;

    const Packet& picture = frame(frames_++, planes);
    Packet bytes;
    bytes.reserve(picture.size() + 5);
    for (int shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<std::uint8_t>(ready >> shift));
    }
    bytes.insert(bytes.end(), picture.begin(), picture.end());
    bytes.push_back(0);
    reply(std::move(bytes), ready);
}

const Packet& Controller::frame(std::uint32_t index, std::uint8_t planes) const {
    if (options_.board == Board::Xl) {
        return animation_.frame(index, XlPlanes, Coding::Binary);
    }
    const bool count = countsPlanes(working_[InputModeByte], planes);
    return animation_.frame(index, planes, count ? Coding::Count : Coding::Binary);
}

Packet Controller::capturedPlanes(std::uint32_t index, std::uint8_t planes) const {
    return frame(index, planes);
}

void Controller::reply(Packet bytes, std::uint64_t ready) {
    reply_ = std::move(bytes);
    replyReady_ = ready;
}

std::optional<Packet> Controller::takeReply() { return std::exchange(reply_, std::nullopt); }

std::uint64_t Controller::replyDelay() const {
    const std::uint64_t now = options_.clock();
    return reply_ && replyReady_ > now ? replyReady_ - now : 0;
}

}  // namespace simulator
