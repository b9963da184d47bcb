#include "simulator/bus.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <thread>

#include "simulator/bus_state.h"
#include "simulator/environment.h"

namespace simulator {

namespace {

bool concerns(const Fault& fault, const Call& call) {
    if (!fault.function.empty() && fault.function != call.function) {
        return false;
    }
    return fault.endpoint == -1 ||
           (call.function == "libusb_bulk_transfer" && fault.endpoint == call.endpoint);
}

void add(Fault& effect, const Fault& fault) {
    effect.result = effect.result ? effect.result : fault.result;
    effect.reply = effect.reply ? effect.reply : fault.reply;
    effect.transferred = effect.transferred ? effect.transferred : fault.transferred;
    effect.unplug = effect.unplug || fault.unplug;
    effect.meanwhile = effect.meanwhile ? effect.meanwhile : fault.meanwhile;
}

std::string hex(int value) {
    char text[16];
    std::snprintf(text, sizeof text, "%02X", static_cast<unsigned>(value));
    return text;
}

std::string describeBytes(const Packet& bytes) {
    constexpr std::ptrdiff_t CountedZeros = 8;
    std::string text;
    for (auto byte = bytes.begin(); byte != bytes.end();) {
        const auto zerosEnd =
            std::find_if(byte, bytes.end(), [](auto value) { return value != 0; });
        const std::ptrdiff_t zeros = zerosEnd - byte;
        text += text.empty() ? "" : " ";
        if (zeros >= CountedZeros) {
            text += "00*" + std::to_string(zeros);
            byte = zerosEnd;
        } else {
            text += hex(*byte++);
        }
    }
    return text;
}

}  // namespace

int Bus::State::findDevice(Token token) const {
    const auto slot = std::find_if(devices.begin(), devices.end(),
                                   [token](const Slot& each) { return each.token == token; });
    return slot == devices.end() ? -1 : static_cast<int>(slot - devices.begin());
}

int Bus::State::findHandle(Token token) const {
    const auto handle = handles.find(token);
    return handle == handles.end() ? -1 : handle->second;
}

bool Bus::State::hasContext(Token token) const {
    return token == 0 ? defaultContext > 0 || !contexts.empty() : contexts.contains(token);
}

Fault Bus::State::takeFaults(const Call& call) {
    Fault effect;
    std::vector<Fault> remaining;
    for (Fault& fault : faults) {
        const bool concerned = concerns(fault, call);
        if (concerned && fault.nth <= 1) {
            add(effect, fault);
        }
        const bool usedUp = concerned && fault.nth == 1;
        if (concerned && fault.nth > 1) {
            --fault.nth;
        }
        if (!usedUp) {
            remaining.push_back(std::move(fault));
        }
    }
    faults = std::move(remaining);
    return effect;
}

void Bus::State::record(Call call) {
    if (log.is_open()) {
        log << describe(call) << std::endl;  // Flushed: the process may end at any time.
    }
    if (!logging) {
        return;
    }
    calls.push_back(std::move(call));
    if (keep > 0 && calls.size() >= 2 * keep) {
        dropOldCalls();  // Only now and then, as everything behind the dropped calls moves up.
    }
}

void Bus::State::dropOldCalls() {
    if (keep > 0 && calls.size() > keep) {
        calls.erase(calls.begin(), calls.end() - static_cast<std::ptrdiff_t>(keep));
    }
}

void Bus::State::wait(std::uint64_t ms) {
    if (realTime) {
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
    } else {
        skipped += ms;
    }
}

void Bus::State::lookForRemoteDevices() {
    if (!simulator) {
        return;
    }
    std::vector<usbip::ExportedDevice> found = listRemoteDevices(*simulator);
    for (Slot& slot : devices) {
        const auto& remote = slot.device.remote;
        if (remote && slot.present) {
            const bool known = !remote->lost() && std::erase(found, remote->exported()) > 0;
            slot.present = known;
        }
    }
    for (const usbip::ExportedDevice& exported : found) {
        devices.push_back(
            {.device = {.vendor = exported.vendor,
                        .product = exported.product,
                        .remote = std::make_shared<RemoteDevice>(*simulator, exported)},
             .token = newToken()});
    }
}

void Bus::State::reset() {
    simulator.reset();
    devices.clear();
    handles.clear();
    faults.clear();
    calls.clear();
    keep = 0;
    logging = true;
    log.close();
    realTime = false;
    start = std::chrono::steady_clock::now();
    skipped = 0;
    ++resets;
}

Bus::Bus() : state_(std::make_unique<State>()) {}
Bus::~Bus() = default;

Bus& Bus::instance() {
    // Never destroyed, so that calls from the client's own static destructors find it.
    static Bus& bus = []() -> Bus& {
        Bus* fresh = new Bus;
        configureFromEnvironment(*fresh);
        return *fresh;
    }();
    return bus;
}

void Bus::reset() { state_->reset(); }

int Bus::plug(Device device) {
    state_->devices.push_back({.device = std::move(device), .token = state_->newToken()});
    return static_cast<int>(state_->devices.size()) - 1;
}

std::shared_ptr<Controller> Bus::plugController(ControllerOptions options,
                                                std::string productString) {
    options.clock = [this] { return now(); };
    auto controller = std::make_shared<Controller>(std::move(options));
    plug({.productString = std::move(productString), .controller = controller});
    return controller;
}

void Bus::unplug(int number) {
    if (number >= 0 && static_cast<std::size_t>(number) < state_->devices.size()) {
        state_->devices[static_cast<std::size_t>(number)].present = false;
    }
}

bool Bus::join(const std::string& simulator) {
    state_->simulator = parseRemoteAddress(simulator);
    return state_->simulator.has_value();
}

void Bus::leave() { state_->simulator.reset(); }

void Bus::inject(Fault fault) { state_->faults.push_back(std::move(fault)); }

void Bus::clearFaults() { state_->faults.clear(); }

const std::vector<Call>& Bus::calls() const {
    state_->dropOldCalls();
    return state_->calls;
}

void Bus::clearCalls() { state_->calls.clear(); }

void Bus::logTo(const std::filesystem::path& path) {
    state_->log.close();
    state_->log.clear();
    if (!path.empty()) {
        state_->log.open(path, std::ios::app);
    }
}

void Bus::keepCalls(std::size_t count) { state_->keep = count; }

void Bus::setLogging(bool logging) { state_->logging = logging; }

void Bus::setRealTime(bool real) { state_->realTime = real; }

std::uint64_t Bus::now() const {
    using std::chrono::milliseconds;
    const auto elapsed = std::chrono::steady_clock::now() - state_->start;
    const auto ms = std::chrono::duration_cast<milliseconds>(elapsed).count();
    return static_cast<std::uint64_t>(ms) + state_->skipped;
}

int Bus::openContexts() const {
    return state_->defaultContext + static_cast<int>(state_->contexts.size());
}

int Bus::openHandles() const { return static_cast<int>(state_->handles.size()); }

int Bus::claimedInterfaces() const {
    const auto& devices = state_->devices;
    return static_cast<int>(std::count_if(devices.begin(), devices.end(),
                                          [](const auto& slot) { return slot.claimedBy != 0; }));
}

int Bus::deviceLists() const {
    const auto& lists = state_->lists;
    return static_cast<int>(std::count_if(lists.begin(), lists.end(), [this](const auto& list) {
        return list.second == state_->resets;
    }));
}

std::string describe(const Call& call) {
    std::string text = call.function;
    const auto say = [&text](std::string_view name, int value) {
        if (value >= 0) {
            text.append(" ").append(name).append("=").append(std::to_string(value));
        }
    };
    say("device", call.device);
    if (call.function == "libusb_bulk_transfer") {
        text += " endpoint=0x" + hex(call.endpoint);
    } else {
        const bool isString = call.function == "libusb_get_string_descriptor_ascii";
        say(isString ? "index" : "interface", call.endpoint);
    }
    say("length", call.length);
    say("timeout", call.timeout);
    text += call.countAsked ? " counted" : "";
    text += call.stale ? " stale" : "";
    text += " result=" + std::to_string(call.result);
    const auto at = std::chrono::floor<std::chrono::milliseconds>(call.at.time_since_epoch());
    text += " at=" + std::to_string(at.count());
    return call.data.empty() ? text : text + " data=" + describeBytes(call.data);
}

}  // namespace simulator
