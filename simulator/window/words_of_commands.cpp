#include <algorithm>
#include <array>
#include <span>

#include "simulator/server/descriptors.h"
#include "simulator/window/words.h"
#include "simulator/window/words_of_values.h"

namespace simulator {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t FrameSize = 2052;
constexpr std::size_t DumpRequestSize = 64;
constexpr std::size_t OperandByte = 5;

bool startsWith(Bytes data, std::initializer_list<std::uint8_t> start) {
    return data.size() >= start.size() && std::equal(start.begin(), start.end(), data.begin());
}

std::string uploadInWords(Bytes frame) {
    constexpr std::size_t NameByte = 6;
    const std::uint8_t phase = frame[OperandByte];
    if (phase == 0x00) {
        const Bytes name = frame.subspan(NameByte);
        const std::string text(name.begin(), std::ranges::find(name, 0));
        return "Open the file \"" + words::printable(text) + "\"";
    }
    if (phase == 0x01) {
        return words::bytes(frame[NameByte] * std::size_t{256} + frame[NameByte + 1]) +
               " of the file";
    }
    return phase == 0xFF ? "Close the file" : "Upload frame of an unknown kind";
}

std::string recordInWords(Bytes record) {
    return "Use the settings " + words::modeName(record[InputModeByte]) + ", " +
           words::presetName(record[PaletteIndexByte]) + ", brightness " +
           std::to_string(record[BrightnessByte]) + ", enhancer " +
           words::onOff(record[EnhancerByte]);
}

std::string commandInWords(Bytes frame) {
    constexpr std::size_t CodeByte = 4;
    constexpr std::size_t BrightnessOperandByte = 17;
    switch (frame[CodeByte]) {
        case 0x00:
            return "Restart";
        case 0x01:
            return "Keep the settings";
        case 0x02:
            return "Input mode " + words::modeName(frame[OperandByte]);
        case 0x03:
            return words::presetName(frame[OperandByte]);
        case 0x04:
            return "Custom palette";
        case 0x08:
            return "Brightness " + std::to_string(frame[BrightnessOperandByte]);
        case 0x0A:
            return uploadInWords(frame);
        case 0x10:
            return "Tell the settings";
        case 0x11:
            return "Tell the unique id";
        case 0x12:
            return "Keep the palette";
        case 0x20:
            return recordInWords(frame.subspan(OperandByte));
        default:
            return "Unknown command, number " + std::to_string(frame[CodeByte]);
    }
}

std::string messageInWords(Bytes data) {
    if (data.size() == FrameSize && startsWith(data, {0x81, 0xC3, 0xE7, 0xFF})) {
        return commandInWords(data);
    }
    if (data.size() == FrameSize && startsWith(data, {0x81, 0xC3, 0xE7, 0x00})) {
        return "Picture";
    }
    if (data.size() == DumpRequestSize && startsWith(data, {0x02, 0xC3, 0xE8})) {
        const unsigned planes = data[3];
        return "Capture a frame, " + std::to_string(planes) + (planes == 1 ? " plane" : " planes");
    }
    return "Not understood, " + words::bytes(data.size());
}

}  // namespace

std::string words::printable(std::string_view text) {
    constexpr char Digits[] = "0123456789ABCDEF";
    std::string result;
    for (const char letter : text) {
        const auto byte = static_cast<unsigned char>(letter);
        if (byte >= ' ' && byte < 0x7F) {
            result += letter;
        } else {
            result += {'\\', 'x', Digits[byte / 16], Digits[byte % 16]};
        }
    }
    return result;
}

std::optional<std::string> inWords(const Transfer& transfer) {
    const bool isReply = transfer.endpoint == descriptors::InEndpoint;
    if (!transfer.error.empty()) {
        return (isReply ? "Reply failed: " : "Transfer failed: ") + transfer.error;
    }
    return isReply ? std::nullopt : std::optional(messageInWords(transfer.data));
}

void CommandList::add(const Transfer& transfer) {
    std::optional<std::string> text = inWords(transfer);
    if (!text) {
        return;
    }
    if (!entries_.empty() && entries_.front().text == *text) {
        ++entries_.front().count;
        return;
    }
    entries_.push_front({std::move(*text), 1});
    if (entries_.size() > Most) {
        entries_.pop_back();
    }
}

std::vector<Row> CommandList::rows() const {
    std::vector<Row> rows;
    for (const Entry& entry : entries_) {
        rows.push_back(
            {entry.text, entry.count == 1 ? "" : std::to_string(entry.count) + " times"});
    }
    return rows;
}

}  // namespace simulator
