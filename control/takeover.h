#ifndef LUMADOT_CONTROL_TAKEOVER_H
#define LUMADOT_CONTROL_TAKEOVER_H

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "control/session.h"
#include "control/settings_exchange.h"
#include "ui/palette.h"

namespace control {

/// The display of a controller, taken from the machine: for the time the controller is in input
/// mode 0, in which it shows the image frames that it is sent. 128 x 32 dots only.
class Takeover {
public:
    /// Opens the controller that is meant and reads its settings. Throws Failure, also for the XL
    /// board.
    explicit Takeover(Session& session);

    const Settings& settings() const { return settings_; }

    /// Takes the display and does the work. Whatever comes of it, the controller is told its mode
    /// again, and its preset if `colours`, 48 bytes or none, was sent to it; unless the work ends
    /// well and `stays`. Throws what the work throws, or Failure.
    void during(std::span<const std::uint8_t> colours, bool stays,
                const std::function<void()>& work);

    /// Palette entries of 128 x 32 dots. Throws Failure, or Interrupted.
    void show(const std::vector<std::uint8_t>& entries);

    /// The commands that bring the machine back: "lumadotctl mode 5".
    std::string wayBack() const;

private:
    void take(std::span<const std::uint8_t> colours);
    void giveBack();
    void giveBackAfterFailure();

    Session& session_;
    std::unique_ptr<Channel> channel_;
    Settings settings_;
    bool paletteSent_ = false;
};

}  // namespace control

#endif
