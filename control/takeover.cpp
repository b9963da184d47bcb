#include "control/takeover.h"

#include "control/interrupt.h"
#include "device/frames.h"
#include "device/image_frame.h"
#include "device/input_mode.h"

namespace control {

Takeover::Takeover(Session& session) : session_(session), channel_(session.connect()) {
    const DeviceInfo* const device = channel_->device();
    if (device != nullptr && device->variant == variant::Xl) {
        throw Failure(ExitCode::Failed,
                      "The XL board cannot be shown pictures: its display has "
                      "192 x 64 dots, an image frame has 128 x 32.",
                      "Name another controller with --device.");
    }
    settings_ = readSettings(*channel_);
}

void Takeover::during(std::span<const std::uint8_t> colours, bool stays,
                      const std::function<void()>& work) {
    try {
        take(colours);
        work();
    } catch (...) {
        giveBackAfterFailure();
        throw;
    }
    if (!stays) {
        giveBack();
    }
}

void Takeover::show(const std::vector<std::uint8_t>& entries) {
    constexpr std::size_t Dots = image_frame::Rows * image_frame::Columns;
    channel_->send(image_frame::fromDots(std::span(entries).first<Dots>()));
}

std::string Takeover::wayBack() const {
    std::string commands = "lumadotctl mode " + std::to_string(settings_.record.inputMode);
    if (paletteSent_) {
        commands += " && lumadotctl preset " + std::to_string(settings_.record.paletteIndex);
    }
    return commands;
}

void Takeover::take(std::span<const std::uint8_t> colours) {
    channel_->send(
        frames::command(Command::SelectMode, static_cast<std::uint8_t>(InputMode::PinMame)));
    if (!colours.empty()) {
        paletteSent_ = true;
        channel_->send(frames::palette(colours.first<PaletteSize>()));
    }
}

/// The mode first: it is what the machine needs.
void Takeover::giveBack() {
    channel_->sendInAnyCase(frames::command(Command::SelectMode, settings_.record.inputMode));
    if (paletteSent_) {
        channel_->sendInAnyCase(
            frames::command(Command::SelectPreset, settings_.record.paletteIndex));
    }
}

/// What has failed first is what the user is told; this comes in addition.
void Takeover::giveBackAfterFailure() {
    try {
        giveBack();
    } catch (const Failure& failure) {
        // A controller that is plugged in again has its stored mode.
        if (failure.code != ExitCode::NoController) {
            session_.output().message("The machine's display has not been given back. To do so: " +
                                      wayBack());
        }
    }
}

}  // namespace control
