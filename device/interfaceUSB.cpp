#include "device/interfaceUSB.h"

#include <libusb.h>
#include <wx/event.h>
#include <wx/msgdlg.h>
#include <wx/time.h>
#include <wx/utils.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <memory>
#include <new>
#include <span>

#include "device/capture.h"
#include "device/connection.h"
#include "device/file_stream.h"
#include "device/frames.h"
#include "device/logo_frame.h"
#include "device/narrow_text.h"
#include "device/upload.h"
#include "device/wire.h"

libusb_device** devs;
libusb_device_handle* MyLibusbDeviceHandle;
libusb_device_descriptor desc;
USBClass usb;
bool dump_running = false;
configDescriptor config;
char versionString[9];
char UIDString[unique_id::TextSize];

namespace {

constexpr unsigned long ReconnectPause = 100;  // ms between two attempts of a capture

/// The USB library has been initialised at least once.
bool libraryStarted = false;

/// True while the handle is one that an operation has left open and claimed: a capture that wants
/// the controller again gives it back first.
bool leftOpen = false;

/// While a capture lets window events run, an operation that one of them starts takes the
/// interface over, because no second connection could claim it.
struct {
    bool yielding = false;
    bool lent = false;  ///< nobody has taken the capture's own connection yet
} lending;

/// The whole frame to the open controller; the result is ignored.
void sendFrame(const CommandFrame& frame) {
    connection::send(MyLibusbDeviceHandle, frame.bytes(), wire::Timeout);
}

/// Asks the open controller for a frame and writes it; a frame that does not come writes nothing.
void takeFrame(dump::Capture& capture, const dump::Files& files) {
    connection::send(MyLibusbDeviceHandle, capture.request(), wire::DumpRequestTimeout);
    if (connection::receive(MyLibusbDeviceHandle, capture.reply(), wire::DumpReplyTimeout) == 0) {
        capture.append(files);
    } else {
        files.appendText({});
    }
}

constexpr const char* FileError = "File Error";

const char* messageOf(upload::Outcome outcome) {
    switch (outcome) {
        case upload::Outcome::OpenRefused:
            return "File Open Error";
        case upload::Outcome::DataRefused:
            return "File Transfer Error";
        case upload::Outcome::CloseRefused:
            return "File Close Error";
        case upload::Outcome::Done:
            break;
    }
    return "File Upload Successful !";
}

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

/// An operation's hold on the open controller. Each operation says itself how it ends; an exception
/// (there is no memory) that passes through it gives the controller back, or nobody could open it
/// again before the program ends.
class Hold {
public:
    Hold() = default;
    ~Hold() {
        if (open && std::uncaught_exceptions() > exceptionsBefore_) {
            usb.release();
        }
    }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

    void giveBack() {
        open = false;
        usb.release();
    }

    bool open = true;

private:
    int exceptionsBefore_ = std::uncaught_exceptions();
};

/// While it lives, the connection of a capture, if it has one, is lent to whom the window events
/// start; after that `connected` tells whether nobody has taken it over.
class Loan {
public:
    explicit Loan(bool& connected) : connected_(connected) {
        lending = {.yielding = true, .lent = connected};
    }
    ~Loan() {
        connected_ = lending.lent;
        lending = {};
    }
    Loan(const Loan&) = delete;
    Loan& operator=(const Loan&) = delete;

private:
    bool& connected_;
};

/// Handles pending window events. `connected`: whether the capture has a connection, before and
/// after.
void handleEvents(bool& connected) {
    const Loan loan(connected);
    wxYieldIfNeeded();
}

}  // namespace

USBClass::~USBClass() = default;

int USBClass::setup() {
    if (lending.lent || (lending.yielding && leftOpen)) {
        lending.lent = false;
        release();
    }
    const connection::Opened opened =
        connection::open({libraryStarted, devs, desc, MyLibusbDeviceHandle});
    leftOpen = opened.claimed >= 0 && opened.variant == variant::None;
    return opened.variant;
}

int USBClass::release() {
    connection::close(MyLibusbDeviceHandle);
    MyLibusbDeviceHandle = nullptr;
    leftOpen = false;
    return 1;
}

bool USBClass::sendUSB(unsigned char* buffer, int length) {
    if (setup() == variant::None) {
        return false;
    }
    connection::send(MyLibusbDeviceHandle, {buffer, static_cast<std::size_t>(length)},
                     wire::Timeout);
    release();
    return true;
}

configDescriptor USBClass::getSettings(configDescriptor current, char* version) {
    if (setup() == variant::None) {
        return current;
    }
    const Hold hold;
    auto request = std::make_unique<CommandFrame>(Command::ReadSettings);
    auto reply = std::make_unique<settings::Reply>();
    sendFrame(*request);
    if (connection::receive(MyLibusbDeviceHandle, std::span(*reply).first<settings::ReplyLength>(),
                            wire::Timeout) != 0) {
        wxMessageBox("Firmware version not supported ! Please upgrade !", "Error", wxOK);
        // Kept for compatibility: the handle is not cleared, and both buffers stay allocated.
        connection::close(MyLibusbDeviceHandle);
        static_cast<void>(request.release());
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
    std::array<std::uint8_t, unique_id::ReplyLength> reply{};
    int received = 0;
    sendFrame(CommandFrame(Command::ReadUniqueId));
    if (connection::receive(MyLibusbDeviceHandle, reply, wire::Timeout, &received) == 0) {
        unique_id::applyReply(reply, received, uid);
    }
    release();
}

void USBClass::sendConfig(configDescriptor settings) {
    if (setup() == variant::None) {
        return;
    }
    const Hold hold;
    const auto frame = std::make_unique<CommandFrame>(frames::settings(settings));
    sendFrame(*frame);
    release();
}

bool USBClass::sendConfigCmd(char command, char argument) {
    auto frame = std::make_unique<CommandFrame>(
        frames::command(static_cast<std::uint8_t>(command), static_cast<std::uint8_t>(argument)));
    if (!sendUSB(frame->data(), CommandFrame::size())) {
        static_cast<void>(frame.release());  // Kept for compatibility: it stays allocated.
        return false;
    }
    return true;
}

void USBClass::sendPal(unsigned char* colours) {
    const auto frame = std::make_unique<CommandFrame>(
        frames::palette(std::span<const std::uint8_t, PaletteSize>(colours, PaletteSize)));
    sendUSB(frame->data(), CommandFrame::size());
}

void USBClass::setBrightness(int value) {
    const auto frame = std::make_unique<CommandFrame>(frames::brightness(value));
    sendUSB(frame->data(), CommandFrame::size());
    wxMilliSleep(wire::BrightnessPause);
}

void USBClass::uploadFile(const char* localPath, const char* destinationName) {
    if (setup() == variant::None) {
        return;
    }
    Hold hold;
    const bool waits = file::wouldWait(localPath, "rb");
    file::Stream stream = file::open(localPath, "rb");
    if (!stream && !waits) {
        leftOpen = true;  // Kept for compatibility: the controller stays open and claimed.
        wxMessageBox(FileError);
        return;
    }
    const std::int64_t length = stream ? file::length(stream.get()) : -1;
    const bool fits = length >= 0 && length <= upload::MaxSize;
    const auto size = fits ? static_cast<std::size_t>(length) : 0;
    std::unique_ptr<std::uint8_t[]> content(new (std::nothrow) std::uint8_t[size]);
    if (!fits || !content) {
        hold.giveBack();
        wxMessageBox(FileError);
        return;
    }
    auto frame = std::make_unique<CommandFrame>(Command::Upload);
    auto answer = std::make_unique<upload::Answer>();
    const std::size_t held = std::fread(content.get(), 1, size, stream.get());
    std::fill(content.get() + held, content.get() + size, std::uint8_t{0});  // It has shrunk.

    const upload::Outcome outcome = upload::transfer(
        destinationName, {content.get(), size}, *frame, [&](const CommandFrame& next) {
            sendFrame(next);
            return connection::receive(MyLibusbDeviceHandle,
                                       std::span(*answer).first<upload::AnswerLength>(),
                                       wire::Timeout) >= 0 &&
                   upload::accepts(answer->front());
        });
    if (outcome != upload::Outcome::Done) {
        // Kept for compatibility: the buffers stay allocated and the file stays open.
        static_cast<void>(content.release());
        static_cast<void>(frame.release());
        static_cast<void>(answer.release());
        static_cast<void>(stream.release());
    }
    content.reset();
    frame.reset();
    answer.reset();
    stream.reset();
    hold.giveBack();
    wxMessageBox(messageOf(outcome));
}

// cppcheck-suppress passedByValue ; as its callers expect it
void USBClass::receiveDump(unsigned char mode, wxString directory) {
    const std::int64_t start = wxGetLocalTimeMillis().GetValue();
    const InputModeInfo& info = inputMode(mode);
    const dump::Files files(narrowText(directory), info);
    const int found = setup();
    if (found == variant::None) {
        return;
    }
    Hold hold;
    dump::Capture capture(info, found == variant::Xl, start);
    const NoIdleEvents quiet;
    do {
        if (hold.open) {
            takeFrame(capture, files);
        }
        handleEvents(hold.open);
        if (!hold.open && dump_running) {
            hold.open = reconnect();
        }
    } while (dump_running);
    if (hold.open) {
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
