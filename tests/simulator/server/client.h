#ifndef LUMADOT_TESTS_SIMULATOR_SERVER_CLIENT_H
#define LUMADOT_TESTS_SIMULATOR_SERVER_CLIENT_H

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "simulator/server/session.h"
#include "tests/simulator/packets.h"
#include "tests/simulator/server/hex.h"

/// A client that has attached the device, without sockets and with a clock of its own. It says what
/// the device answers as a line for each reply:
///
///     5: 0, 63: 33 41 37 00*60
///     7: unlinked
class ClientTest : public testing::Test {
protected:
    using Lines = std::vector<std::string>;

    static simulator::ControllerOptions boardWith(std::shared_ptr<std::uint64_t> clock) {
        simulator::ControllerOptions options;
        options.uniqueId = "3A7";
        options.clock = [clock] { return *clock; };
        return options;
    }

    ClientTest() {
        device.onTransfer([this](const simulator::Transfer& transfer) {
            transfers.push_back(transfer.error + " " + std::to_string(transfer.endpoint) + " " +
                                std::to_string(transfer.data.size()));
        });
        attach();
    }

    void attach() {
        session = std::make_unique<simulator::Session>(device);
        session->receive(hex("01 11 80 03 00 00 00 00 31 2D 31 00*29"));
        ASSERT_EQ(session->takeOutput().size(), 8U + 312U);
    }

    /// The replies to the bytes.
    Lines ask(const simulator::usbip::Bytes& bytes) {
        session->receive(bytes);
        return replies();
    }

    Lines replies() {
        simulator::usbip::Bytes bytes = session->takeOutput();
        Lines lines;
        std::span<const std::uint8_t> rest(bytes);
        while (rest.size() >= 48) {
            const auto reply = simulator::usbip::decodeUrbReply(rest.first<48>());
            if (!reply) {
                ADD_FAILURE() << "no reply";
                return lines;
            }
            rest = rest.subspan(48);
            const bool withData = !reply->isUnlink && !writes.contains(reply->sequence);
            const auto data = rest.first(withData ? reply->length : 0);
            rest = rest.subspan(data.size());
            std::string line = std::to_string(reply->sequence) + ": ";
            if (reply->isUnlink) {
                line += reply->status == -104 ? "unlinked" : std::to_string(reply->status);
            } else {
                line += std::to_string(reply->status) + ", " + std::to_string(reply->length);
            }
            lines.push_back(data.empty() ? line : line + ": " + support::byteText(data));
        }
        EXPECT_TRUE(rest.empty());
        return lines;
    }

    simulator::usbip::Bytes write(std::uint32_t sequence, simulator::Packet data,
                                  std::uint32_t flags = 0) {
        writes.insert(sequence);
        const auto length = static_cast<std::uint32_t>(data.size());
        return encode(simulator::usbip::Submit{.sequence = sequence,
                                               .device = 0x00010002,
                                               .endpoint = 1,
                                               .flags = flags,
                                               .length = length,
                                               .data = std::move(data)});
    }

    static simulator::usbip::Bytes read(std::uint32_t sequence, std::uint32_t length,
                                        std::uint32_t flags = 0) {
        return encode(simulator::usbip::Submit{.sequence = sequence,
                                               .device = 0x00010002,
                                               .direction = simulator::usbip::Direction::In,
                                               .endpoint = 1,
                                               .flags = flags,
                                               .length = length});
    }

    static simulator::usbip::Bytes unlink(std::uint32_t sequence, std::uint32_t target) {
        return encode(
            simulator::usbip::Unlink{.sequence = sequence, .device = 0x00010002, .target = target});
    }

    /// A control request; OUT requests have no data.
    simulator::usbip::Bytes control(std::uint32_t sequence, const std::string& setup,
                                    std::uint32_t length = 255) {
        const auto bytes = hex(setup);
        simulator::usbip::Submit urb = {.sequence = sequence, .device = 0x00010002};
        std::copy(bytes.begin(), bytes.end(), urb.setup.begin());
        const bool isIn = (urb.setup[0] & 0x80U) != 0;
        writes.erase(sequence);
        if (isIn) {
            urb.direction = simulator::usbip::Direction::In;
            urb.length = length;
        } else {
            writes.insert(sequence);
        }
        return encode(urb);
    }

    std::shared_ptr<std::uint64_t> clock = std::make_shared<std::uint64_t>(1000);
    simulator::UsbDevice device{boardWith(clock)};
    Lines transfers;  ///< each bulk transfer: error, endpoint, bytes
    std::set<std::uint32_t> writes;
    std::unique_ptr<simulator::Session> session;
};

#endif
