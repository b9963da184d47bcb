#include "control/link.h"

#include <algorithm>
#include <utility>

#include "control/findings.h"
#include "control/interrupt.h"
#include "control/settings_exchange.h"
#include "control/text.h"
#include "control/udev_rule.h"

namespace control {

namespace {

constexpr const char* SeeList = "Run lumadotctl list: it shows the controllers that there are.";

std::string transferText(const char* direction, std::size_t moved, std::size_t length,
                         unsigned int timeout, int result) {
    return std::string(direction) + " " + std::to_string(moved) + " of " + std::to_string(length) +
           " bytes, " + std::to_string(timeout) + " ms, " +
           (result == 0 ? "ok" : usbErrorName(result));
}

Failure failureOr(const std::optional<Finding>& finding, Step step, int usbError) {
    return finding ? failureOf(*finding, usbError) : usbFailure(step, usbError);
}

struct Opening {
    std::shared_ptr<const Bus> bus;
    unsigned int timeout;
    Output& output;
};

std::unique_ptr<Link> establish(const Opening& opening, const Bus::Found& found) {
    interrupt::check();
    OpenDevice device(found);
    DeviceInfo info = placeOf(found.device);
    if (const int error = device.open(); error < 0) {
        throw failureOr(permissionFinding(error), Step::Open, error);
    }
    connection::Product product = device.readProduct();
    if (product.variant == variant::None) {
        throw failureOf(findings::nameUnreadable(0));
    }
    info.variant = product.variant;
    info.product = std::move(product.name);
    interrupt::check();
    if (const int error = device.claim(); error < 0) {
        throw failureOr(holdFinding(device, info, error), Step::Claim, error);
    }
    return std::make_unique<Link>(std::move(device), std::move(info), opening.timeout,
                                  opening.output, opening.bus);
}

/// Asks one after the other. One that cannot be asked may be the one that is meant: when no other
/// is, its failure is what has to be reported.
std::unique_ptr<Link> openById(const Opening& opening, const std::string& id) {
    std::optional<Failure> unasked;
    for (const Bus::Found& found : opening.bus->controllers()) {
        try {
            std::unique_ptr<Link> link = establish(opening, found);
            if (readUniqueId(*link) == id) {
                return link;
            }
        } catch (const Interrupted&) {
            throw;
        } catch (const Failure& failure) {
            unasked = unasked.value_or(failure);
        }
    }
    throw unasked.value_or(Failure(
        ExitCode::NoController, "There is no controller with the unique id " + id + ".", SeeList));
}

/// The number of bytes that a transfer claims to have moved, as far as it can be true.
std::size_t plausible(int moved, std::size_t length) {
    return std::min(static_cast<std::size_t>(std::max(moved, 0)), length);
}

#ifdef _WIN32
constexpr bool OnWindows = true;
#else
constexpr bool OnWindows = false;
#endif

}  // namespace

bool isPlace(const std::string& choice) {
    const auto dash = choice.find('-');
    return dash != std::string::npos && dash > 0 && dash + 1 < choice.size() &&
           std::ranges::count(choice, '-') == 1 && choice.back() != '.' &&
           choice.find_first_not_of("0123456789-.") == std::string::npos &&
           choice.find('.') > dash + 1;
}

std::optional<Finding> permissionFinding(int usbError) {
    if constexpr (OnWindows) {
        return findings::ofOpeningOnWindows(usbError);
    }
    if (usbError != LIBUSB_ERROR_ACCESS) {
        return std::nullopt;
    }
    return isRuleInstalled(RuleFolders) ? findings::ruleNotInForce() : findings::noRule();
}

std::optional<Finding> holdFinding(const OpenDevice& device, const DeviceInfo& place,
                                   int usbError) {
    if (OnWindows && usbError == LIBUSB_ERROR_ACCESS) {
        return findings::takenOnWindows();
    }
    if (usbError != LIBUSB_ERROR_BUSY) {
        return std::nullopt;
    }
    return device.hasKernelDriver() ? findings::driverBound()
                                    : findings::busy(holderOf(place.bus, place.address));
}

const Bus::Found& atPlace(const Bus& bus, const std::string& place) {
    const auto found = std::ranges::find_if(bus.controllers(), [&](const Bus::Found& each) {
        return placeText(placeOf(each.device)) == place;
    });
    if (found == bus.controllers().end()) {
        throw Failure(ExitCode::NoController, "There is no controller at " + place + ".", SeeList);
    }
    return *found;
}

Link::Link(OpenDevice device, DeviceInfo info, unsigned int timeout, Output& output,
           std::shared_ptr<const Bus> bus)
    : Channel(timeout),
      bus_(std::move(bus)),
      device_(std::move(device)),
      info_(std::move(info)),
      output_(output) {}

std::unique_ptr<Link> Link::open(const DeviceChoice& choice, unsigned int timeout, Output& output) {
    const auto bus = std::make_shared<const Bus>();
    if (bus->controllers().empty()) {
        throw failureOf(findings::nothingOnTheBus());
    }
    const Opening opening{bus, timeout, output};
    if (!choice.empty() && !isPlace(choice)) {
        return openById(opening, choice);
    }
    return establish(opening, choice.empty() ? bus->controllers().front() : atPlace(*bus, choice));
}

void Link::doSend(std::span<const std::uint8_t> bytes, unsigned int timeout) {
    int moved = 0;
    const int result = connection::send(device_.handle(), bytes, timeout, &moved);
    const std::size_t sent = plausible(moved, bytes.size());
    if (output_.isVerbose()) {
        output_.trace(transferText("out 0x01", sent, bytes.size(), timeout, result) + ": " +
                      byteText(bytes));
    }
    if (result < 0) {
        throw usbFailure(Step::Send, result);
    }
    if (sent < bytes.size()) {
        throw Failure(ExitCode::NoAnswer,
                      "The controller has taken " + std::to_string(sent) + " of " +
                          std::to_string(bytes.size()) + " bytes only.",
                      "Unplug the controller, plug it in again and try once more.");
    }
}

std::size_t Link::doReceive(std::span<std::uint8_t> bytes, unsigned int timeout) {
    int moved = 0;
    const int result = connection::receive(device_.handle(), bytes, timeout, &moved);
    const std::size_t received = plausible(moved, bytes.size());
    if (output_.isVerbose()) {
        const std::string text = transferText("in 0x81", received, bytes.size(), timeout, result);
        output_.trace(received > 0 ? text + ": " + byteText(bytes.first(received)) : text);
    }
    if (result < 0) {
        throw usbFailure(Step::Receive, result);
    }
    return received;
}

}  // namespace control
