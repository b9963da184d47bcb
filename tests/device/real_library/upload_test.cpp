// File upload on the real libusb.

#include <gmock/gmock.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/device/real_library/real_library.h"
#include "tests/support/odd_files.h"
#include "tests/support/temporary_folder.h"

namespace {

using support::Bytes;
using support::claimByAnotherProgram;
using support::frame;
using support::MockedUsbfs;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class RealLibraryUpload : public support::RealLibrary {
protected:
    /// Uploads a file of these bytes as "a", which ends with this message.
    void upload(const Bytes& content, const char* outcome) {
        const auto file = folder_.path() / "local.bin";
        support::writeFile(file, content);
        dialogs_.expectMessage(outcome, "Message");
        usb_.uploadFile(file.c_str(), "a");
        EXPECT_EQ(MyLibusbDeviceHandle, nullptr);
        EXPECT_EQ(support::timesOpen(file), outcome == Success ? 0 : 1);
    }

    static constexpr const char* Success = "File Upload Successful !";
    const support::TemporaryFolder folder_;
};

TEST_F(RealLibraryUpload, SendsOpenDataAndCloseAndReadsAByteAfterEach) {
    const MockedUsbfs controller;
    upload({0x48, 0x69, 0x21}, Success);
    EXPECT_THAT(controller->received(),
                ElementsAre(frame({0x81, 0xC3, 0xE7, 0xFF, 0x0A, 0x00, 0x61}),
                            frame({0x81, 0xC3, 0xE7, 0xFF, 0x0A, 0x01, 0, 3, 0x48, 0x69, 0x21}),
                            frame({0x81, 0xC3, 0xE7, 0xFF, 0x0A, 0xFF})));
    std::vector<int> endpoints;
    for (const auto& transfer : controller->transfers()) {
        endpoints.push_back(transfer.endpoint);
        EXPECT_EQ(transfer.length, transfer.endpoint == 0x81 ? 1U : 2052U);
        EXPECT_EQ(transfer.status, 0);
    }
    EXPECT_THAT(endpoints, ElementsAre(0x01, 0x81, 0x01, 0x81, 0x01, 0x81));
    EXPECT_EQ(claimByAnotherProgram(), 0);
}

TEST_F(RealLibraryUpload, ArrivesByteForByte) {
    const MockedUsbfs controller;
    const Bytes content = support::pattern(10000);
    upload(content, Success);
    EXPECT_THAT(controller->board([](auto& board) { return board.files(); }),
                ElementsAre(Pair("a", content)));
}

struct Refusal {
    int frame;
    const char* message;
};

class RealLibraryUploadRefused : public RealLibraryUpload,
                                 public testing::WithParamInterface<Refusal> {};

TEST_P(RealLibraryUploadRefused, EndsThereReleased) {
    const MockedUsbfs controller;
    controller->board([](auto& board) {
        board.refuseUploadFrame(GetParam().frame);
        return 0;
    });
    upload({0x48, 0x69, 0x21}, GetParam().message);
    EXPECT_EQ(controller->received().size(), static_cast<std::size_t>(GetParam().frame));
    EXPECT_THAT(controller->board([](auto& board) { return board.files(); }), IsEmpty());
    EXPECT_EQ(claimByAnotherProgram(), 0);
}

TEST_P(RealLibraryUploadRefused, EndsThereTooWhenTheControllerHasGone) {
    const MockedUsbfs controller;
    // Each frame is a request, and so is the byte that answers it.
    controller->setFaults({.pullOutAt = 2 * GetParam().frame});
    upload({0x48, 0x69, 0x21}, GetParam().message);
    EXPECT_EQ(controller->received().size(), static_cast<std::size_t>(GetParam().frame));
}

INSTANTIATE_TEST_SUITE_P(At, RealLibraryUploadRefused,
                         testing::Values(Refusal{1, "File Open Error"},
                                         Refusal{2, "File Transfer Error"},
                                         Refusal{3, "File Close Error"}),
                         [](const auto& test) { return std::to_string(test.param.frame); });

}  // namespace
