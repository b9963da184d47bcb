// The heap blocks of every operation: which ones it frees, and which ones it keeps on purpose.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <new>

#include "tests/support/device_link.h"

namespace {

/// The blocks of the watched sizes that are in use. The addresses are kept complemented: a leak
/// checker must not take them for the owners.
class Watch {
public:
    static constexpr std::size_t Frame = 2052;
    static constexpr std::size_t Reply = 64;

    void taken(void* block, std::size_t size) {
        for (Entry& entry : entries_) {
            if (running_ && size == size_ && entry.address == 0) {
                entry.address = ~reinterpret_cast<std::uintptr_t>(block);
                ++taken_;
                return;
            }
        }
    }
    void given(void* block) {
        for (Entry& entry : entries_) {
            if (entry.address == ~reinterpret_cast<std::uintptr_t>(block)) {
                entry.address = 0;
            }
        }
    }

    /// Forgets everything and looks at blocks of this size from now on.
    void start(std::size_t size) {
        entries_ = {};
        taken_ = 0;
        size_ = size;
        running_ = true;
    }
    /// New blocks are no longer looked at.
    void stop() { running_ = false; }

    int allTaken() const { return taken_; }
    int stillInUse() const {
        return static_cast<int>(
            std::ranges::count_if(entries_, [](const Entry& each) { return each.address != 0; }));
    }

private:
    struct Entry {
        std::uintptr_t address;
    };
    std::array<Entry, 256> entries_{};
    std::size_t size_ = 0;
    int taken_ = 0;
    bool running_ = false;
};

constinit Watch watch;

}  // namespace

void* operator new(std::size_t size) {
    void* const block = std::malloc(std::max<std::size_t>(size, 1));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    watch.taken(block, size);
    return block;
}

void operator delete(void* block) noexcept {
    watch.given(block);
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

namespace {

class Buffers : public support::DeviceLink {
protected:
    Buffers() {
        bus.setLogging(false);  // The log would copy the frames into blocks of the same size.
    }
    ~Buffers() override { watch.stop(); }

    /// Runs the operation and returns how many blocks of this size it took and kept.
    template <class Run>
    int kept(std::size_t size, Run run) {
        watch.start(size);
        run();
        watch.stop();
        taken = watch.allTaken();
        return watch.stillInUse();
    }

    void expectMessage() {
        dialogs.expectMessage("Firmware version not supported ! Please upgrade !", "Error");
    }

    int taken = 0;
};

const auto Command = [] { usb.sendConfigCmd(0x02, 0x05); };
const auto Brightness = [] { usb.setBrightness(30); };
const auto Colours = [] {
    static std::array<unsigned char, 48> colours;
    usb.sendPal(colours.data());
};
const auto Write = [] { usb.sendConfig(config); };
const auto Read = [] { config = usb.getSettings(config, versionString); };
const auto ReadId = [] { usb.getUniqueId(UIDString); };

TEST_F(Buffers, OfACommandAreFreedWithAController) {
    bus.plugController();
    EXPECT_EQ(kept(Watch::Frame, Command), 0);
    EXPECT_EQ(taken, 1);
}

TEST_F(Buffers, OfACommandStayAllocatedWithoutControllerOnceACall) {
    EXPECT_EQ(kept(Watch::Frame, Command), 1);
    const auto threeCommands = [] {
        Command();
        Command();
        Command();
    };
    EXPECT_EQ(kept(Watch::Frame, threeCommands), 3);
}

TEST_F(Buffers, OfACommandStayAllocatedWhenTheClaimIsRefused) {
    bus.plug({.refuseClaim = true});
    EXPECT_EQ(kept(Watch::Frame, Command), 1);
}

TEST_F(Buffers, OfACommandAreFreedWhenTheTransferFails) {
    bus.plug({});
    EXPECT_EQ(kept(Watch::Frame, Command), 0);
    EXPECT_EQ(taken, 1);
}

TEST_F(Buffers, OfABrightnessAreFreedWhateverTheResult) {
    EXPECT_EQ(kept(Watch::Frame, Brightness), 0);
    EXPECT_EQ(taken, 1);
    bus.plugController();
    EXPECT_EQ(kept(Watch::Frame, Brightness), 0);
    EXPECT_EQ(taken, 1);
}

TEST_F(Buffers, OfAPaletteAreFreedWhateverTheResult) {
    EXPECT_EQ(kept(Watch::Frame, Colours), 0);
    EXPECT_EQ(taken, 1);
    bus.plugController();
    EXPECT_EQ(kept(Watch::Frame, Colours), 0);
    EXPECT_EQ(taken, 1);
}

TEST_F(Buffers, OfASettingsWriteAreFreed) {
    bus.plugController();
    EXPECT_EQ(kept(Watch::Frame, Write), 0);
    EXPECT_EQ(taken, 1);
}

TEST_F(Buffers, OfASettingsWriteAreNotTakenWithoutController) {
    EXPECT_EQ(kept(Watch::Frame, Write), 0);
    EXPECT_EQ(taken, 0);
}

TEST_F(Buffers, OfASettingsReadAreFreed) {
    bus.plugController();
    EXPECT_EQ(kept(Watch::Frame, Read), 0);
    EXPECT_EQ(taken, 1);
    EXPECT_EQ(kept(Watch::Reply, Read), 0);
    EXPECT_GE(taken, 1);
}

TEST_F(Buffers, OfASettingsReadAreNotTakenWithoutController) {
    EXPECT_EQ(kept(Watch::Frame, Read), 0);
    EXPECT_EQ(taken, 0);
}

TEST_F(Buffers, OfAFailedSettingsReadStayAllocatedBoth) {
    bus.plug({});
    expectMessage();
    Read();  // The toolkit's own first-time blocks.
    expectMessage();
    EXPECT_EQ(kept(Watch::Frame, Read), 1);
    expectMessage();
    EXPECT_EQ(kept(Watch::Reply, Read), 1);
}

TEST_F(Buffers, OfAUniqueIdReadAreFreedWhateverTheResult) {
    bus.plugController();
    EXPECT_EQ(kept(Watch::Frame, ReadId), 0);
    failTransfer(0x81, LIBUSB_ERROR_TIMEOUT);
    EXPECT_EQ(kept(Watch::Frame, ReadId), 0);
}

}  // namespace
