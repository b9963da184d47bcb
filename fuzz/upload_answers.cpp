// An upload of three blocks and a rest, whose acknowledgements are the input: two bytes each, how
// the read ends and the byte that arrives.

#include <unistd.h>

#include <array>
#include <cstdint>
#include <fstream>
#include <string>

#include "device/interfaceUSB.h"
#include "fuzz/expect.h"
#include "fuzz/window.h"
#include "simulator/bus.h"

namespace {

constexpr int Frames = 6;  // open, 3 x 512 bytes, 64 bytes, close
constexpr std::array<int, 8> Results = {0, 0, 0, -1, -4, -7, -8, -9};

std::string uploadFileName() {
    static const std::string name = fuzz::inputFile() + "-upload";
    static const bool written =
        static_cast<bool>(std::ofstream(name, std::ios::binary) << std::string(1600, 'x'));
    EXPECT(written);
    return name;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::window();
    auto& bus = simulator::Bus::instance();
    bus.reset();
    bus.setLogging(false);
    bus.plugController();

    int refusedAt = Frames;
    for (int i = 0; i < Frames && 2 * static_cast<std::size_t>(i) + 1 < size; ++i) {
        const int result = Results[data[2 * i] % Results.size()];
        const std::uint8_t answer = data[2 * i + 1];
        bus.inject({.function = "libusb_bulk_transfer",
                    .nth = i + 1,
                    .result = result,
                    .reply = simulator::Packet{answer},
                    .endpoint = 0x81});
        if (refusedAt == Frames && (result < 0 || answer == 1)) {
            refusedAt = i;
        }
    }
    const int nextFile = dup(STDERR_FILENO);
    close(nextFile);
    usb.uploadFile(uploadFileName().c_str(), "name");
    if (refusedAt < Frames) {
        close(nextFile);  // Left open on purpose, but here it would be thousands.
    }
    const wxString expected = refusedAt == 0            ? "File Open Error"
                              : refusedAt < Frames - 1  ? "File Transfer Error"
                              : refusedAt == Frames - 1 ? "File Close Error"
                                                        : "File Upload Successful !";
    EXPECT(fuzz::takeMessages() == expected);
    EXPECT(bus.openHandles() == 0);
    EXPECT(MyLibusbDeviceHandle == nullptr);
    return 0;
}
