#ifndef LUMADOT_TESTS_DEVICE_UPLOAD_UPLOAD_FIXTURE_H
#define LUMADOT_TESTS_DEVICE_UPLOAD_UPLOAD_FIXTURE_H

#include <filesystem>
#include <memory>
#include <string>

#include "tests/support/device_link.h"
#include "tests/support/message_box.h"
#include "tests/support/odd_files.h"
#include "tests/support/temporary_folder.h"

using Bytes = std::vector<std::uint8_t>;

/// A frame: these bytes, then `content`, then zeros up to 2052.
inline Bytes frameOf(Bytes head, const Bytes& content = {}) {
    head.insert(head.end(), content.begin(), content.end());
    EXPECT_LE(head.size(), 2052U);
    head.resize(2052);
    return head;
}

inline Bytes openFrame(const std::string& name) {
    return frameOf({0x81, 0xC3, 0xE7, 0xFF, 0x0A, 0x00}, Bytes(name.begin(), name.end()));
}

/// The data frame with this length, as it stands in bytes 6 and 7, and this block.
inline Bytes dataFrame(std::uint8_t high, std::uint8_t low, const Bytes& block) {
    return frameOf({0x81, 0xC3, 0xE7, 0xFF, 0x0A, 0x01, high, low}, block);
}

inline Bytes closeFrame() { return frameOf({0x81, 0xC3, 0xE7, 0xFF, 0x0A, 0xFF}); }

/// The calls that send a frame and read its acknowledgement.
inline support::Lines exchange(const Bytes& frame) {
    return {"out 0x01 2052 1000ms #0: " + support::byteText(frame), "in 0x81 1 1000ms #0"};
}

/// The calls of a whole upload that sends these frames.
inline support::Lines uploadLines(const std::vector<Bytes>& frames) {
    support::Lines lines = support::setupLines();
    for (const Bytes& frame : frames) {
        lines = support::joined({lines, exchange(frame)});
    }
    return support::joined({lines, support::releaseLines()});
}

/// A folder with files to upload. The tool must never change them.
class Upload : public support::DeviceLink {
protected:
    /// Puts a controller on the bus.
    void plug() { controller = bus.plugController(); }

    std::filesystem::path makeFile(const Bytes& content) {
        std::filesystem::path path = folder.path() / "local.bin";
        support::writeFile(path, content);
        return path;
    }

    /// Announces the message box with this text, in the toolkit's plain style. When it comes, so
    /// many handles must be open and interfaces claimed.
    void expectOutcome(const std::string& text, int connections = 0) {
        support::expectPlainMessage(dialogs, text, [=, this] {
            EXPECT_EQ(bus.openHandles(), connections);
            EXPECT_EQ(bus.claimedInterfaces(), connections);
        });
    }

    /// Uploads `content` from a file, which must be the same afterwards.
    void upload(const Bytes& content, const std::string& name) {
        const auto path = makeFile(content);
        const auto time = std::filesystem::last_write_time(path);
        send(path, name);
        EXPECT_EQ(support::readFile(path), content);
        EXPECT_EQ(std::filesystem::last_write_time(path), time);
    }

    /// As the window calls it, with the path in UTF-8.
    void send(const std::filesystem::path& file, const std::string& name = "a.bin") {
        const std::u8string path = file.u8string();
        usb.uploadFile(reinterpret_cast<const char*>(path.c_str()), name.c_str());
    }

    const support::TemporaryFolder folder;
    std::shared_ptr<simulator::Controller> controller;
};

#endif
