// An upload of three blocks and a rest, whose acknowledgements are the input: two bytes each, how
// the read ends and the byte that arrives, if one does.

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
constexpr std::array<int, 19> Results = {0,  0,  0,  0,  0,  0,   -1,  -2,  -3, -4,
                                         -5, -6, -7, -8, -9, -10, -11, -12, -99};
constexpr std::uint8_t NoByte = 0x80;  ///< in the first byte

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
    const auto controller = bus.plugController();

    int refusedAt = Frames;
    for (int i = 0; i < Frames && 2 * static_cast<std::size_t>(i) + 1 < size; ++i) {
        const std::uint8_t how = data[2 * i];
        const int result = Results[(how & ~NoByte) % Results.size()];
        const bool arrives = (how & NoByte) == 0;
        const std::uint8_t answer = data[2 * i + 1];
        bus.inject({.function = "libusb_bulk_transfer",
                    .nth = i + 1,
                    .result = result,
                    .reply = arrives ? simulator::Packet{answer} : simulator::Packet{},
                    .endpoint = 0x81});
        // Where nothing arrives, the acknowledgement before stands: an acceptance.
        if (refusedAt == Frames && (result < 0 || (arrives && answer == 1))) {
            refusedAt = i;
        }
    }
    usb.uploadFile(uploadFileName().c_str(), "name");
    if (refusedAt < Frames) {
        fuzz::closeFile(uploadFileName());
    }
    const wxString expected = refusedAt == 0            ? "File Open Error"
                              : refusedAt < Frames - 1  ? "File Transfer Error"
                              : refusedAt == Frames - 1 ? "File Close Error"
                                                        : "File Upload Successful !";
    EXPECT(fuzz::takeMessages() == expected);
    // The controller saves the file when the close frame comes, and then only.
    const auto& files = controller->files();
    EXPECT(files.contains("name") == (refusedAt >= Frames - 1));
    EXPECT(files.empty() || files.at("name") == simulator::Packet(1600, 'x'));
    EXPECT(bus.deviceLists() == 0);
    EXPECT(bus.openHandles() == 0);
    EXPECT(MyLibusbDeviceHandle == nullptr);
    return 0;
}
