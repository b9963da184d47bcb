#ifndef LUMADOT_SIMULATOR_CONTROLLER_H
#define LUMADOT_SIMULATOR_CONTROLLER_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "simulator/capture.h"
#include "simulator/store.h"

namespace simulator {

/// The two boards: 128 x 32 dots, or 192 x 64 dots.
enum class Board { Standard, Xl };

struct DotCount {
    std::size_t columns = 0;
    std::size_t rows = 0;

    bool operator==(const DotCount&) const = default;
};

/// The two layouts of the settings reply; the older firmware sends four settings and no version.
enum class SettingsLayout { Newer, Older };

/// The settings record as the board holds it, 23 bytes.
using Record = std::array<std::uint8_t, 23>;

// Places in it.
inline constexpr std::size_t InputModeByte = 0;
inline constexpr std::size_t PaletteIndexByte = 1;
inline constexpr std::size_t EnhancerByte = 21;
inline constexpr std::size_t BrightnessByte = 22;

/// Sixteen entries of red, green, blue.
using Palette = std::array<std::uint8_t, 48>;

/// One of the palettes that the board brings along, 0..8; nothing: there is none of that number.
std::optional<Palette> preset(std::uint8_t index);

/// What a board is made with. Plain data, so that a test starts from one good board and breaks one
/// thing.
struct ControllerOptions {
    Board board = Board::Standard;
    SettingsLayout layout = SettingsLayout::Newer;
    std::string firmware = "V4.02b";  ///< sent as 6 characters, cut or zero-filled
    std::string uniqueId = "3A7F00C21D5E9B64";
    Record settings = {0, 0, 15, 10, 15, 12, 15, 0, 15, 15, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 30};
    std::filesystem::path store =
        {};                           ///< directory for what survives a restart; empty: memory only
    std::uint32_t frameInterval = 0;  ///< ms between two captured frames; 0: as fast as asked
    /// Whether its USB plug tells Windows which driver it wants.
    bool windowsDescriptors = false;
    std::uint32_t restartTime = 1000;  ///< ms without an answer after a reset
    /// The board's clock in ms. The time stamps of captured frames and the restart follow it.
    std::function<std::uint64_t()> clock = [] { return std::uint64_t{0}; };
};

/// The simulated board: the far end of the two bulk endpoints, and nothing else. It knows no USB
/// library, no window and none of the tool's code, so that a mistake made there cannot cancel out
/// here. Whatever a client sends is survived: unknown packets are counted and ignored.
class Controller {
public:
    explicit Controller(ControllerOptions options = {});

    /// One OUT transfer. A new request drops a reply that nobody has read. Image frames and
    /// commands are 2052 bytes, dump requests 64; everything else is ignored, as is all that
    /// arrives while the board restarts.
    void receive(std::span<const std::uint8_t> packet);

    /// The reply that waits for an IN transfer, if there is one; taking it removes it.
    std::optional<Packet> takeReply();

    bool hasReply() const { return reply_.has_value(); }

    /// How long from now until the waiting reply is ready, in ms (0: at once). Only captured frames
    /// make a client wait, and only with a frame interval.
    std::uint64_t replyDelay() const;

    // What the board holds, for tests and for the demo to look at.
    const Record& working() const { return working_; }   ///< settings in use
    const Record& permanent() const { return stored_; }  ///< settings that survive a restart
    const Palette& palette() const { return palette_; }  ///< palette in use
    const Palette& permanentPalette() const { return storedPalette_; }
    const std::map<std::string, Packet>& files() const { return files_; }  ///< closed uploads
    /// The image frame that is shown: the last one, unless an input mode was chosen, the settings
    /// were written, or the board restarted since.
    const std::optional<Packet>& image() const { return image_; }
    DotCount size() const;  ///< of the display
    std::uint32_t capturedFrames() const { return frames_; }
    int ignoredPackets() const { return ignored_; }
    bool restarting() const { return restartDelay() > 0; }
    /// How long from now until the board answers again after a reset, in ms (0: it does).
    std::uint64_t restartDelay() const;

    /// The light of each dot in the `step`th frame of the imaginary machine, row by row from the
    /// top: 0 to 2 ^ `planes` - 1, or to `planes` when they are counted.
    Packet machineLevels(std::uint32_t step, std::uint8_t planes, Coding coding) const {
        return animation_.levels(step, planes, coding);
    }

    std::uint32_t frameInterval() const { return options_.frameInterval; }
    /// ms between two captured frames from now on; 0: as fast as asked.
    void setFrameInterval(std::uint32_t ms) { options_.frameInterval = ms; }

    /// Acknowledges the nth upload frame from now (1 = the next) with 0x01, a refusal.
    void refuseUploadFrame(int nth) { refuseUploadFrame_ = nth; }

    /// The byte that accepts an upload frame; anything but 0x01.
    void acceptUploadsWith(std::uint8_t byte) { acceptByte_ = byte; }

    /// The planes of the `index`th frame of the imaginary machine, as the reply carries them:
    /// `planes` x 512 bytes on the standard board, 2 x 1536 on the XL board. The input modes 9 and
    /// 10 light a dot in as many of their four planes as it is bright, as three planes and five or
    /// more do in every mode; else the planes are the bits of the dot's shade.
    Packet capturedPlanes(std::uint32_t index, std::uint8_t planes) const;

private:
    void command(std::span<const std::uint8_t> packet);
    void dumpRequest(std::uint8_t planes);
    void selectPreset(std::uint8_t index);
    void loadPalette(std::span<const std::uint8_t> packet);
    void uploadFrame(std::span<const std::uint8_t> packet);
    bool takeUpload(std::span<const std::uint8_t> packet);
    void store();
    void storePalette();
    void restart();
    void sendSettings();
    void sendUniqueId();
    void reply(Packet bytes, std::uint64_t ready);
    const Packet& frame(std::uint32_t index, std::uint8_t planes) const;

    ControllerOptions options_;
    Store store_;
    mutable Animation animation_;  // Keeps what it rendered; what it shows does not change.
    Record working_{};
    Record stored_{};
    Palette palette_{};
    Palette storedPalette_{};
    bool paletteIsPreset_ = false;  ///< selected since the start, and no palette loaded over it
    std::map<std::string, Packet> files_;
    std::optional<std::string> openName_;
    Packet openData_;
    std::optional<Packet> image_;
    std::optional<Packet> reply_;
    std::uint64_t replyReady_ = 0;
    std::uint64_t silentUntil_ = 0;
    std::uint64_t lastFrame_ = 0;
    std::uint32_t frames_ = 0;
    int ignored_ = 0;
    int refuseUploadFrame_ = 0;
    std::uint8_t acceptByte_ = 0;
};

}  // namespace simulator

#endif
