#include "control/channel.h"

#include "control/interrupt.h"

namespace control {

void Channel::send(std::span<const std::uint8_t> bytes, unsigned int timeout) {
    interrupt::check();
    doSend(bytes, timeout);
}

}  // namespace control
