#ifndef LUMADOT_DEVICE_INTERFACEUSB_H
#define LUMADOT_DEVICE_INTERFACEUSB_H

#include <wx/string.h>

#include "device/settings_record.h"
#include "device/unique_id.h"
#include "device/variant.h"

struct libusb_device;
struct libusb_device_handle;
struct libusb_device_descriptor;

/// The tool's way to the display controller: USB device 0314:e457, interface 0, bulk endpoints 0x01
/// out and 0x81 in.
///
/// Every operation opens its own connection: `setup`, transfers, `release`. Nothing is held between
/// two user actions, but for a capture, which holds its connection until it ends. All operations
/// run on the GUI thread and block it for as long as their transfers take. Failures are silent
/// unless an operation says otherwise.
class USBClass {
public:
    virtual ~USBClass();

    /// Finds the first controller on the bus, opens it and claims interface 0. Returns a variant;
    /// unless that is variant::None the caller owes a `release`.
    int setup();

    /// Releases interface 0, closes the handle and clears it. Always returns 1.
    int release();

    /// Sends `length` bytes to the controller (1000 ms). False: no controller. True says only that
    /// there is one; the transfer's own result is ignored. The caller keeps the buffer.
    bool sendUSB(unsigned char* buffer, int length);

    /// Asks the controller for its settings. Returns `current` with what the controller sent, or
    /// unchanged when nothing could be read. `version` (room for 6 characters) takes the firmware
    /// version if the reply has one. A controller that does not answer is reported in a message
    /// box.
    configDescriptor getSettings(configDescriptor current, char* version);

    /// Reads the controller's unique id into `uid` (unique_id::TextSize characters, always
    /// NUL-terminated). A failed read leaves `uid` as it was.
    void getUniqueId(char* uid);

    /// Writes the settings record to the controller's working settings.
    void sendConfig(configDescriptor settings);

    /// Sends the command with this code and one operand. False: no controller.
    bool sendConfigCmd(char command, char argument);

    /// Sends the palette: 48 bytes, 16 entries of red, green, blue.
    void sendPal(unsigned char* colours);

    /// Sets the display brightness at once, clamped to 10..255, then waits 50 ms in every case,
    /// which spaces the frames of a slider that is being dragged.
    void setBrightness(int value);

    /// Copies the file at `localPath` into the controller's storage under `destinationName`, of
    /// which no more than 2046 characters reach the controller. Reports the outcome in one message
    /// box, except that it says nothing when there is no controller. Folders, pipes, terminals and
    /// files of 2 GiB or more are refused.
    void uploadFile(const char* localPath, const char* destinationName);

    /// Records the frames that the controller captures in input mode `mode` into dump files in
    /// `directory`, until `dump_running` is false after a frame; at once when there is no
    /// controller. Window events are handled once a frame. Any operation may come in between: it
    /// takes the connection over, and the capture opens a new one for its next frame.
    void receiveDump(unsigned char mode, wxString directory);

    /// Shows the built-in logo. False: no controller. No control of the window calls it.
    bool sendLogo();

private:
    void dropHandle();
    bool reconnect();
};

/// The list of the last enumeration.
extern libusb_device** devs;
/// The open handle. Only `release`, and a capture that looks for its controller again, clear it: a
/// path that closes without clearing leaves it behind, and the next `setup` that finds no
/// controller goes on with it. Kept for compatibility.
extern libusb_device_handle* MyLibusbDeviceHandle;
/// The descriptor of the device that was looked at last.
extern libusb_device_descriptor desc;

extern USBClass usb;

/// True while a capture shall go on.
extern bool dump_running;

/// The tool's copy of the controller's settings.
extern configDescriptor config;
/// Firmware version text: 6 characters and zeros.
extern char versionString[9];
/// The controller's unique id, NUL-terminated; empty until one has been read.
extern char UIDString[unique_id::TextSize];

#endif
