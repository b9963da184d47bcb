// The simulator's server survives any clients: the input is a list of what clients, the clock and
// the user of the simulator do. What is sent back must be replies to what was asked for, each once.

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <span>

#include "fuzz/expect.h"
#include "simulator/server/session.h"

namespace {

using namespace simulator;
using usbip::Bytes;

constexpr std::uint32_t DeviceId = 0x00010002;
constexpr std::size_t ImportReplySize = usbip::OperationSize + usbip::DeviceSize;

/// Takes the input to pieces; zeros follow its end.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

    bool atEnd() const { return rest_.empty(); }
    std::uint8_t byte() {
        const std::uint8_t value = atEnd() ? 0 : rest_.front();
        rest_ = rest_.subspan(atEnd() ? 0 : 1);
        return value;
    }
    Bytes bytes(std::size_t count) {
        const auto part = rest_.first(std::min(count, rest_.size()));
        rest_ = rest_.subspan(part.size());
        return {part.begin(), part.end()};
    }

private:
    std::span<const std::uint8_t> rest_;
};

/// Clients of one device, one after the other, and what they may expect.
class World {
public:
    World() { connect(); }

    void act(Input& input) {
        switch (input.byte() % 8) {
            case 0:
                return sendRaw(input.bytes(input.byte()));
            case 1:
                return import();
            case 2:
                return submit(input);
            case 3:
                return unlink(input.byte());
            case 4:
                now_ += input.byte();
                return client_->update(), check();
            case 5:
                return connect();
            case 6:
                return inject(input);
            default:
                return plug(input.byte());
        }
    }

private:
    void connect() {
        client_.emplace(device_);
        expected_.clear();
        checking_ = true;
    }

    /// Bytes that may be anything: the replies cannot be told beforehand.
    void sendRaw(const Bytes& bytes) {
        checking_ = false;
        client_->receive(bytes);
        check();
    }

    void import() {
        const bool free = device_.pluggedIn() && !device_.attached() && !client_->over();
        checking_ = checking_ && !client_->attached();  // Else it is the start of an URB.
        client_->receive(encode(usbip::ImportRequest{"1-1"}));
        if (checking_) {
            EXPECT(client_->attached() == free);
            const std::size_t size = client_->takeOutput().size();
            EXPECT(size <= usbip::OperationSize || (free && size == ImportReplySize));
        }
        check();
    }

    void submit(Input& input) {
        const std::uint8_t kind = input.byte();
        usbip::Submit urb = {.sequence = ++sequence_, .device = DeviceId};
        urb.direction = (kind & 1U) != 0 ? usbip::Direction::In : usbip::Direction::Out;
        urb.endpoint = kind >> 1U & 3U;
        urb.flags = (kind & 8U) != 0 ? 0x41U : 0;
        urb.length = input.byte() * 17U;
        for (std::uint8_t& part : urb.setup) {
            part = urb.endpoint == 0 ? input.byte() : 0;
        }
        if (urb.direction == usbip::Direction::Out) {
            urb.data = message(input, kind);
            urb.length = static_cast<std::uint32_t>(urb.data.size());
        }
        const bool attached = client_->attached();
        if (attached) {
            expected_.insert(urb.sequence);
        }
        if (urb.direction == usbip::Direction::In) {
            reads_.insert(urb.sequence);
        }
        checking_ = checking_ && attached;
        client_->receive(encode(urb));
        check();
    }

    /// Mostly what the board understands.
    static Bytes message(Input& input, std::uint8_t kind) {
        constexpr std::size_t FrameSize = 2052;
        if ((kind & 16U) != 0) {
            return input.bytes(input.byte());
        }
        Bytes frame = {0x81, 0xC3, 0xE7, 0xFF, input.byte(), input.byte(), input.byte()};
        frame.resize(FrameSize);
        if ((kind & 32U) != 0) {
            // Planes take their time, and a few long replies are enough.
            frame = {0x02, 0xC3, 0xE8, static_cast<std::uint8_t>(input.byte() == 0xFF ? 2 : 0)};
            frame.resize(64);
        }
        if ((kind & 64U) != 0) {
            frame.resize(input.byte() * 9U);
        }
        return frame;
    }

    void unlink(std::uint8_t back) {
        const std::uint32_t target = sequence_ - back;
        checking_ = checking_ && client_->attached();
        unlinking_ = target;
        client_->receive(encode(usbip::Unlink{++sequence_, DeviceId, target}));
        check();
    }

    void inject(Input& input) {
        const std::uint8_t kind = input.byte();
        device_.inject({.endpoint = static_cast<std::uint8_t>((kind & 1U) != 0 ? 0x81 : 0x01),
                        .nth = static_cast<int>(kind >> 1U & 3U),
                        .what = static_cast<TransferFault::What>(kind >> 3U & 3U),
                        .bytes = input.byte() * std::size_t{8}});
    }

    void plug(std::uint8_t kind) {
        if (kind % 4 == 0) {
            device_.unplug();
        } else if (kind % 4 == 1) {
            device_.plugIn();
        } else if (kind % 4 == 2) {
            device_.clearFaults();
        } else {
            device_.slowDown(kind);
        }
        client_->update();
        check();
    }

    void check() {
        EXPECT(!client_->over() || !client_->attached());
        EXPECT(device_.waiting() <= Session::MostWaiting);
        EXPECT(client_->attached() || device_.waiting() == 0);
        const Bytes output = client_->takeOutput();
        if (checking_) {
            checkReplies(output);
        }
    }

    void checkReplies(std::span<const std::uint8_t> output) {
        while (!output.empty()) {
            EXPECT(output.size() >= usbip::UrbHeaderSize);
            const auto reply = usbip::decodeUrbReply(output.first<usbip::UrbHeaderSize>());
            EXPECT(reply);
            output = output.subspan(usbip::UrbHeaderSize);
            if (reply->isUnlink) {
                // Either it was taken back, or it had been answered before.
                EXPECT((expected_.erase(unlinking_) == 1) == (reply->status != 0));
                continue;
            }
            EXPECT(expected_.erase(reply->sequence) == 1);
            // Only IN transfers bring bytes, and those follow; a write's length is its own.
            const bool isRead = reads_.contains(reply->sequence);
            output = output.subspan(isRead ? reply->length : 0);
        }
    }

    std::uint64_t now_ = 0;
    UsbDevice device_{{.frameInterval = 16, .restartTime = 100, .clock = [this] { return now_; }}};
    std::optional<Session> client_;
    std::set<std::uint32_t> expected_;
    std::set<std::uint32_t> reads_;
    std::uint32_t sequence_ = 0;
    std::uint32_t unlinking_ = 0;
    bool checking_ = true;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Enough to import, to ask, to take back and to come again; more would only take more time.
    constexpr int MostActions = 12;
    Input input(data, size);
    World world;
    for (int action = 0; action < MostActions && !input.atEnd(); ++action) {
        world.act(input);
    }
    return 0;
}
