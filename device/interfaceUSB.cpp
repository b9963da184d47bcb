#include "device/interfaceUSB.h"

#include <libusb.h>
#include <wx/app.h>
#include <wx/event.h>
#include <wx/msgdlg.h>
#include <wx/time.h>
#include <wx/utils.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <string_view>
#include <vector>

#include "device/command_frame.h"
#include "device/dump_files.h"
#include "device/dump_format.h"
#include "device/file_stream.h"
#include "device/input_mode.h"
#include "device/logo_frame.h"

libusb_device** devs;
libusb_device_handle* MyLibusbDeviceHandle;
libusb_device_descriptor desc;
USBClass usb;
bool dump_running = false;
configDescriptor config;
char versionString[9];
char UIDString[64];

namespace {

constexpr std::uint16_t VendorId = 0x0314;
constexpr std::uint16_t ProductId = 0xE457;
constexpr int Interface = 0;
constexpr unsigned char EndpointOut = 0x01;
constexpr unsigned char EndpointIn = 0x81;
constexpr unsigned int Timeout = 1000;             // ms, for everything but frame dumps
constexpr unsigned int DumpRequestTimeout = 2000;  // ms
constexpr unsigned int DumpReplyTimeout = 10000;   // ms
constexpr unsigned long ReconnectPause = 100;      // ms between two attempts

constexpr std::size_t PaletteSize = 48;
constexpr int MinBrightness = 10;  // Not 0 on purpose.
constexpr int MaxBrightness = 255;
constexpr unsigned long BrightnessPause = 50;  // ms

/// True while a capture lets window events run: an operation that one of them starts takes the
/// capture's connection over, because no second one could claim the interface.
bool connectionLent = false;

/// True while the handle is one that an operation has left open and claimed on purpose.
bool leftOpen = false;

/// The whole frame to the open controller; the result is ignored.
void sendFrame(CommandFrame& frame) {
    libusb_bulk_transfer(MyLibusbDeviceHandle, EndpointOut, frame.data(), CommandFrame::size(),
                         nullptr, Timeout);
}

int variantOf(std::string_view product) {
    if (product == "LUMADOT") {
        return variant::Standard;
    }
    return product == "LUMADOT XL" ? variant::Xl : variant::UnknownName;
}

/// The open controller's variant by its product string, or the error of reading it.
int readVariant() {
    constexpr int Length = 256;
    auto product = std::make_unique<std::array<char, Length + 1>>();
    const int result = libusb_get_string_descriptor_ascii(
        MyLibusbDeviceHandle, desc.iProduct, reinterpret_cast<unsigned char*>(product->data()),
        Length);
    return result > 0 ? variantOf(product->data()) : result;
}

/// Opens the first controller in the order of enumeration; later ones are never considered.
void openFirstController() {
    devs = nullptr;  // A failed enumeration leaves it alone, and the old list is gone.
    const auto count = static_cast<std::int32_t>(libusb_get_device_list(nullptr, &devs));
    for (std::int32_t i = 0; i < count; ++i) {
        libusb_get_device_descriptor(devs[i], &desc);
        if (desc.idVendor == VendorId && desc.idProduct == ProductId) {
            if (libusb_open(devs[i], &MyLibusbDeviceHandle) == 0) {
                leftOpen = false;
            }
            return;
        }
    }
}

/// File upload: what its frames carry, and the answer to each of them.
namespace upload {

enum class Phase : std::uint8_t { Open = 0x00, Data = 0x01, Close = 0xFF };

// Offsets in the frame.
constexpr std::size_t PhaseByte = CommandFrame::FirstOperand;
constexpr std::size_t Name = 6;         // open: the name, ended by the frame's zeros
constexpr std::size_t BlockLength = 6;  // data: two bytes, big-endian
constexpr std::size_t Block = 8;        // data: the block's bytes

constexpr std::size_t BlockSize = 512;
constexpr std::uint8_t Refused = 0x01;  // Any other acknowledgement accepts the frame.

using Acknowledgement = std::array<unsigned char, 64>;

/// Sends the frame and reads its acknowledgement; false: refused, or not answered.
bool exchange(CommandFrame& frame, Acknowledgement& answer) {
    sendFrame(frame);
    const int result =
        libusb_bulk_transfer(MyLibusbDeviceHandle, EndpointIn, answer.data(), 1, nullptr, Timeout);
    return result >= 0 && answer[0] != Refused;
}

void setPhase(CommandFrame& frame, Phase phase) {
    frame.clearFrom(PhaseByte);
    frame.set(PhaseByte, static_cast<std::uint8_t>(phase));
}

/// Sends everything from the open frame to the close frame. Returns the message of the phase that
/// failed, or null.
const char* transfer(std::string_view name, std::span<const std::uint8_t> content,
                     CommandFrame& frame, Acknowledgement& answer) {
    setPhase(frame, Phase::Open);
    frame.copy(Name, {reinterpret_cast<const std::uint8_t*>(name.data()), name.size()});
    if (!exchange(frame, answer)) {
        return "File Open Error";
    }
    // The last block is short and may be empty; it is sent in any case.
    for (std::size_t sent = 0; sent <= content.size(); sent += BlockSize) {
        const auto block = content.subspan(sent, std::min(BlockSize, content.size() - sent));
        setPhase(frame, Phase::Data);
        frame.set(BlockLength, static_cast<std::uint8_t>(block.size() >> 8U));
        frame.set(BlockLength + 1, static_cast<std::uint8_t>(block.size()));
        frame.copy(Block, block);
        if (!exchange(frame, answer)) {
            return "File Transfer Error";
        }
    }
    setPhase(frame, Phase::Close);
    return exchange(frame, answer) ? nullptr : "File Close Error";
}

}  // namespace upload

/// The wire and the files of one capture.
class Capture {
public:
    Capture(const InputModeInfo& mode, const dump::Files& files, bool xl, std::int64_t start)
        : files_(files),
          start_(start),
          rawPlanes_(mode.capturePlanes),
          request_(dump::request(xl ? dump::XlPlanes : mode.capturePlanes)),
          reply_(xl ? dump::replyLength(dump::XlPlanes, dump::XlDisplay)
                    : dump::replyLength(mode.capturePlanes, dump::StandardDisplay)),
          text_(xl ? dump::XlDots : mode.dots, xl ? dump::XlDisplay : dump::StandardDisplay) {}

    /// Asks the open controller for a frame and writes it; a frame that does not come writes
    /// nothing.
    void takeFrame() {
        libusb_bulk_transfer(MyLibusbDeviceHandle, EndpointOut, request_.data(),
                             static_cast<int>(request_.size()), nullptr, DumpRequestTimeout);
        const int result =
            libusb_bulk_transfer(MyLibusbDeviceHandle, EndpointIn, reply_.data(),
                                 static_cast<int>(reply_.size()), nullptr, DumpReplyTimeout);
        if (result == 0) {
            write();
        } else {
            files_.appendText({});
        }
    }

private:
    void write() {
        const auto stamp = static_cast<std::uint32_t>(start_ + dump::timeStamp(reply_));
        const auto planes = std::span<const std::uint8_t>(reply_).subspan(dump::PlanesOffset);
        if (files_.hasRaw()) {
            files_.appendRaw(dump::rawBlock(stamp, rawPlanes_, planes));
        }
        files_.appendText(text_.encode(stamp, planes));
    }

    const dump::Files& files_;
    std::int64_t start_;  ///< local time in ms; a frame's stamp is this plus the controller's
    std::uint8_t rawPlanes_;
    dump::Request request_;
    std::vector<std::uint8_t>
        reply_;  ///< zeroed once: what does not arrive stays from the last frame
    dump::TextEncoder text_;
};

/// While it lives, no window is asked whether it is idle or wants an update of its state. None of
/// ours answers, and asking them all once a frame takes longer than decoding the frame.
class NoIdleEvents {
public:
    NoIdleEvents() {
        wxIdleEvent::SetMode(wxIDLE_PROCESS_SPECIFIED);
        wxUpdateUIEvent::SetMode(wxUPDATE_UI_PROCESS_SPECIFIED);
    }
    ~NoIdleEvents() {
        wxIdleEvent::SetMode(idle_);
        wxUpdateUIEvent::SetMode(update_);
    }
    NoIdleEvents(const NoIdleEvents&) = delete;
    NoIdleEvents& operator=(const NoIdleEvents&) = delete;

private:
    wxIdleMode idle_ = wxIdleEvent::GetMode();
    wxUpdateUIMode update_ = wxUpdateUIEvent::GetMode();
};

/// Handles pending window events. Returns whether there is a connection after that: if there was
/// one, an event's operation may have taken it over.
bool yieldConnection(bool connected) {
    connectionLent = connected;
    wxYieldIfNeeded();
    const bool kept = connectionLent;
    connectionLent = false;
    return kept;
}

}  // namespace

USBClass::~USBClass() = default;

int USBClass::setup() {
    if (connectionLent) {
        connectionLent = false;
        release();
    }
    libusb_init(nullptr);  // Each time, and never undone: the library counts.
    openFirstController();
    if (MyLibusbDeviceHandle == nullptr) {
        return variant::None;  // The device list stays allocated on purpose.
    }
    const int found = readVariant();
    libusb_free_device_list(devs, 1);
    if (libusb_claim_interface(MyLibusbDeviceHandle, Interface) < 0) {
        libusb_close(MyLibusbDeviceHandle);  // The global handle is not cleared on purpose.
        return variant::None;
    }
    leftOpen = found == variant::None;
    return found;
}

int USBClass::release() {
    libusb_release_interface(MyLibusbDeviceHandle, Interface);
    libusb_close(MyLibusbDeviceHandle);
    MyLibusbDeviceHandle = nullptr;
    leftOpen = false;
    return 1;
}

bool USBClass::sendUSB(unsigned char* buffer, int length) {
    if (setup() == variant::None) {
        return false;
    }
    libusb_bulk_transfer(MyLibusbDeviceHandle, EndpointOut, buffer, length, nullptr, Timeout);
    release();
    return true;
}

configDescriptor USBClass::getSettings(configDescriptor current, char* version) {
    if (setup() == variant::None) {
        return current;
    }
    auto request = std::make_unique<CommandFrame>(Command::ReadSettings);
    auto reply = std::make_unique<settings::Reply>();
    sendFrame(*request);
    if (libusb_bulk_transfer(MyLibusbDeviceHandle, EndpointIn, reply->data(), settings::ReplyLength,
                             nullptr, Timeout) != 0) {
        wxMessageBox("Firmware version not supported ! Please upgrade !", "Error", wxOK);
        libusb_release_interface(MyLibusbDeviceHandle, Interface);
        libusb_close(MyLibusbDeviceHandle);    // The global handle is not cleared on purpose.
        static_cast<void>(request.release());  // Both buffers stay allocated on purpose.
        static_cast<void>(reply.release());
        return current;
    }
    settings::applyReply(*reply, current, version);
    release();
    return current;
}

void USBClass::getUniqueId(char* uid) {
    if (setup() == variant::None) {
        return;
    }
    auto request = std::make_unique<CommandFrame>(Command::ReadUniqueId);
    std::array<char, sizeof UIDString> reply{};
    constexpr int Length = sizeof UIDString - 1;
    int received = 0;
    sendFrame(*request);
    const int result = libusb_bulk_transfer(MyLibusbDeviceHandle, EndpointIn,
                                            reinterpret_cast<unsigned char*>(reply.data()), Length,
                                            &received, Timeout);
    if (result == 0) {
        // Only what arrived counts, up to the first zero.
        std::fill(reply.begin() + std::clamp(received, 0, Length), reply.end(), '\0');
        std::fill(std::find(reply.begin(), reply.end(), '\0'), reply.end(), '\0');
        std::copy(reply.begin(), reply.end(), uid);
    }
    release();
}

void USBClass::sendConfig(configDescriptor settings) {
    if (setup() == variant::None) {
        return;
    }
    auto frame = std::make_unique<CommandFrame>(Command::WriteSettings);
    frame->copy(CommandFrame::FirstOperand, settings::bytesOf(settings));
    sendFrame(*frame);
    release();
}

bool USBClass::sendConfigCmd(char command, char argument) {
    auto frame = std::make_unique<CommandFrame>(static_cast<std::uint8_t>(command));
    frame->set(CommandFrame::FirstOperand, static_cast<std::uint8_t>(argument));
    if (!sendUSB(frame->data(), CommandFrame::size())) {
        static_cast<void>(
            frame.release());  // Stays allocated on purpose when there is no controller.
        return false;
    }
    return true;
}

void USBClass::sendPal(unsigned char* colours) {
    constexpr std::size_t Mark = 6;
    constexpr std::size_t Entries = 7;
    auto frame = std::make_unique<CommandFrame>(Command::LoadPalette);
    frame->set(Mark, 1);
    frame->copy(Entries, std::span(colours, PaletteSize));
    sendUSB(frame->data(), CommandFrame::size());
}

void USBClass::setBrightness(int value) {
    constexpr std::size_t Level = 17;
    auto frame = std::make_unique<CommandFrame>(Command::Brightness);
    frame->set(Level, static_cast<std::uint8_t>(std::clamp(value, MinBrightness, MaxBrightness)));
    sendUSB(frame->data(), CommandFrame::size());
    wxMilliSleep(BrightnessPause);
}

void USBClass::uploadFile(const char* localPath, const char* destinationName) {
    if (setup() == variant::None) {
        return;
    }
    file::Stream stream = file::open(localPath, "rb");
    if (!stream) {
        leftOpen = true;  // The controller stays open and claimed on purpose.
        wxMessageBox("File Error");
        return;
    }
    const long length = file::length(stream.get());
    const bool fits = length >= 0 && length <= std::numeric_limits<std::int32_t>::max();
    const auto size = fits ? static_cast<std::size_t>(length) : 0;
    std::unique_ptr<std::uint8_t[]> content(new (std::nothrow) std::uint8_t[size]);
    if (!fits || !content) {
        release();
        wxMessageBox("File Error");
        return;
    }
    auto frame = std::make_unique<CommandFrame>(Command::Upload);
    auto answer = std::make_unique<upload::Acknowledgement>();
    const std::size_t held = std::fread(content.get(), 1, size, stream.get());
    std::fill(content.get() + held, content.get() + size, std::uint8_t{0});  // It has shrunk.

    const char* const failure =
        upload::transfer(destinationName, {content.get(), size}, *frame, *answer);
    if (failure != nullptr) {
        // The buffers stay allocated and the file stays open on purpose.
        static_cast<void>(content.release());
        static_cast<void>(frame.release());
        static_cast<void>(answer.release());
        static_cast<void>(stream.release());
    }
    content.reset();
    frame.reset();
    answer.reset();
    stream.reset();
    release();
    wxMessageBox(failure != nullptr ? failure : "File Upload Successful !");
}

// cppcheck-suppress passedByValue ; as its callers expect it
void USBClass::receiveDump(unsigned char mode, wxString directory) {
    const std::int64_t start = wxGetLocalTimeMillis().GetValue();
    const InputModeInfo& info = inputMode(mode);
    const dump::Files files(directory.mb_str(wxConvLibc).data(), info);
    const int found = setup();
    if (found == variant::None) {
        return;
    }
    Capture capture(info, files, found == variant::Xl, start);
    const NoIdleEvents quiet;
    bool connected = true;
    do {
        if (connected) {
            capture.takeFrame();
        }
        connected = yieldConnection(connected);
        if (!connected && dump_running) {
            connected = reconnect();
        }
    } while (dump_running);
    if (connected) {
        release();
    }
}

/// Gives back or forgets what is in the handle, so that no stale one gets to the library.
void USBClass::dropHandle() {
    if (leftOpen) {
        release();
    }
    MyLibusbDeviceHandle = nullptr;
}

/// After another operation has taken the connection over. False: not yet.
bool USBClass::reconnect() {
    dropHandle();
    if (setup() != variant::None) {
        return true;
    }
    if (MyLibusbDeviceHandle == nullptr && devs != nullptr) {
        // An attempt that comes again and again must not pile up.
        libusb_free_device_list(devs, 1);
        devs = nullptr;
    }
    dropHandle();
    wxMilliSleep(ReconnectPause);
    return false;
}

bool USBClass::sendLogo() {
    ImageFrame frame = logoFrame();
    return sendUSB(frame.data(), static_cast<int>(frame.size()));
}
