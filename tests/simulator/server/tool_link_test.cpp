// The tool's own device link through the stand-in and a running simulator.

#include <gmock/gmock.h>

#include <cstdlib>

#include "device/interfaceUSB.h"
#include "tests/simulator/packets.h"
#include "tests/simulator/server/running_server.h"
#include "tests/support/capture_rounds.h"
#include "tests/support/device_link.h"
#include "tests/support/odd_files.h"
#include "tests/support/temporary_folder.h"

namespace {

using simulator::UsbDevice;
using testing::ElementsAre;
using testing::Pair;

class ToolOnASimulator : public support::DeviceLink {
protected:
    ToolOnASimulator() { EXPECT_TRUE(bus.join(server.place())); }

    RunningServer server{{.uniqueId = "3A7"}};
    support::TemporaryFolder folder;
};

TEST_F(ToolOnASimulator, FindsTheController) {
    EXPECT_EQ(usb.setup(), 2);
    EXPECT_EQ(usb.release(), 1);
    expectReleased();
}

TEST_F(ToolOnASimulator, ReadsSettingsVersionAndUniqueId) {
    server.withDevice([](UsbDevice& device) {
        device.controller().receive(packets::command(
            {0x20, 9, 7, 15, 10, 15, 12, 15, 0, 15, 15, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 99}));
    });
    config = usb.getSettings(config, versionString);
    EXPECT_EQ(support::bytesOf(config),
              (support::RecordBytes{9, 7, 15, 10, 15, 12, 15, 0, 15, 15, 0, 0,
                                    0, 0, 0,  0,  0,  0,  0,  0, 1,  0,  99}));
    EXPECT_STREQ(versionString, "V4.02b");
    usb.getUniqueId(UIDString);
    EXPECT_STREQ(UIDString, "3A7");
    expectReleased();
}

TEST_F(ToolOnASimulator, SwitchesModePaletteAndBrightness) {
    EXPECT_TRUE(usb.sendConfigCmd(0x02, 5));
    unsigned char colours[48];
    for (std::size_t i = 0; i < 48; ++i) {
        colours[i] = static_cast<unsigned char>(200 + i);
    }
    usb.sendPal(colours);
    usb.setBrightness(77);
    server.withDevice([&](UsbDevice& device) {
        EXPECT_EQ(device.controller().working()[0], 5);
        EXPECT_THAT(device.controller().palette(), testing::ElementsAreArray(colours));
        EXPECT_EQ(device.controller().working()[22], 77);
    });
    expectReleased();
}

TEST_F(ToolOnASimulator, Uploads64KibByteForByte) {
    const auto content = support::pattern(65536);
    const auto file = folder.path() / "local.bin";
    support::writeFile(file, content);
    dialogs.expectMessage("File Upload Successful !", "Message");
    usb.uploadFile(file.c_str(), "a.bin");
    server.withDevice([&](UsbDevice& device) {
        EXPECT_THAT(device.controller().files(), ElementsAre(Pair("a.bin", content)));
    });
    expectReleased();
}

TEST_F(ToolOnASimulator, Captures50FramesAtTheBoardsPace) {
    server.withDevice([](UsbDevice& device) { device.controller().setFrameInterval(2); });
    usb.sendConfigCmd(0x02, 6);
    support::CaptureRounds rounds;
    rounds.stopAfter(50);
    dump_running = true;
    usb.receiveDump(6, wxString::FromUTF8(folder.path().string()));
    expectReleased();

    const simulator::Controller sameBoard;
    std::vector<std::uint8_t> planes;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        const auto bytes = support::readFile(entry.path());
        if (entry.path().extension() == ".txt") {
            EXPECT_EQ(bytes.size(), 50U * 4174U);
            continue;
        }
        ASSERT_EQ(bytes.size(), 8U + 50U * (4U + 12U * 512U));
        for (std::uint32_t frame = 0; frame < 50; ++frame) {
            const auto start = bytes.begin() + 12 + frame * (4 + 12 * 512);
            EXPECT_EQ(simulator::Packet(start, start + 12 * 512),
                      sameBoard.capturedPlanes(frame, 12))
                << frame;
        }
    }
}

TEST_F(ToolOnASimulator, GoesOnCapturingWhenTheControllerIsPluggedInAgain) {
    support::CaptureRounds rounds;
    rounds.after(3, [this] {
        server.withDevice([](UsbDevice& device) { device.unplug(); });
        usb.sendConfigCmd(0x02, 2);  // The capture has to look for the controller again.
        server.withDevice([](UsbDevice& device) { device.plugIn(); });
    });
    rounds.stopAfter(6);
    dump_running = true;
    usb.receiveDump(2, wxString::FromUTF8(folder.path().string()));
    EXPECT_EQ(rounds.frames(), 6);
}

TEST_F(ToolOnASimulator, FindsNothingWhenTheControllerIsUnplugged) {
    server.withDevice([](UsbDevice& device) { device.unplug(); });
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_FALSE(usb.sendConfigCmd(0x02, 5));
}

}  // namespace
