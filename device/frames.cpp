#include "device/frames.h"

#include <algorithm>

namespace frames {

namespace {

enum class Phase : std::uint8_t { Open = 0x00, Data = 0x01, Close = 0xFF };

void startPhase(CommandFrame& frame, Phase phase) {
    frame.clear();
    frame.set(CommandFrame::FirstOperand, static_cast<std::uint8_t>(phase));
}

}  // namespace

CommandFrame command(std::uint8_t code, std::uint8_t operand) {
    CommandFrame frame(code);
    frame.set(CommandFrame::FirstOperand, operand);
    return frame;
}

CommandFrame palette(std::span<const std::uint8_t, PaletteSize> colours) {
    constexpr std::size_t Mark = 6;
    constexpr std::size_t Entries = 7;
    CommandFrame frame(Command::LoadPalette);
    frame.set(Mark, 1);
    frame.copy(Entries, colours);
    return frame;
}

CommandFrame brightness(int level) {
    constexpr std::size_t Level = 17;
    CommandFrame frame(Command::Brightness);
    frame.set(Level, static_cast<std::uint8_t>(
                         std::clamp(level, settings::MinBrightness, settings::MaxBrightness)));
    return frame;
}

CommandFrame settings(const configDescriptor& record) {
    CommandFrame frame(Command::WriteSettings);
    frame.copy(CommandFrame::FirstOperand, settings::bytesOf(record));
    return frame;
}

void uploadOpen(CommandFrame& frame, std::string_view name) {
    constexpr std::size_t Name = 6;
    startPhase(frame, Phase::Open);
    frame.copy(Name, {reinterpret_cast<const std::uint8_t*>(name.data()), name.size()});
}

void uploadData(CommandFrame& frame, std::span<const std::uint8_t> block) {
    constexpr std::size_t Length = 6;
    constexpr std::size_t Block = 8;
    startPhase(frame, Phase::Data);
    frame.set(Length, static_cast<std::uint8_t>(block.size() >> 8U));
    frame.set(Length + 1, static_cast<std::uint8_t>(block.size()));
    frame.copy(Block, block);
}

void uploadClose(CommandFrame& frame) { startPhase(frame, Phase::Close); }

}  // namespace frames
