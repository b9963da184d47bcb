// Uploads that end early: refused, not answered, or without a controller.

#include "tests/device/upload/upload_fixture.h"

namespace {

using support::callLines;
using support::Lines;
using support::pattern;

/// The frames of an upload of 1000 bytes, and the message when one of them fails.
struct Stage {
    std::string name;
    int frame;  ///< 1 = the first that is sent
    std::string message;
};

void PrintTo(const Stage& each, std::ostream* out) { *out << each.name; }

const std::vector<Stage>& stages() {
    static const std::vector<Stage> all = {{"Open", 1, "File Open Error"},
                                           {"FullBlock", 2, "File Transfer Error"},
                                           {"LastBlock", 3, "File Transfer Error"},
                                           {"Close", 4, "File Close Error"}};
    return all;
}

Bytes part(std::ptrdiff_t from, std::ptrdiff_t to) {
    const Bytes content = pattern(1000);
    return {content.begin() + from, content.begin() + to};
}

class FailingUpload : public Upload {
protected:
    FailingUpload() { plug(); }

    /// The calls up to the frame that failed, then the release.
    static Lines linesUpTo(int frame) {
        const std::vector<Bytes> frames = {openFrame("a.bin"), dataFrame(0x02, 0x00, part(0, 512)),
                                           dataFrame(0x01, 0xE8, part(512, 1000)), closeFrame()};
        return uploadLines({frames.begin(), frames.begin() + frame});
    }

    void expectFailure(const Stage& stage) {
        expectOutcome(stage.message);
        upload(pattern(1000), "a.bin");
        EXPECT_EQ(callLines(), linesUpTo(stage.frame));
        expectReleased();
        EXPECT_EQ(support::timesOpen(folder.path() / "local.bin"), 1) << "left open on purpose";
    }
};

class RefusedUpload : public FailingUpload, public testing::WithParamInterface<Stage> {};

TEST_P(RefusedUpload, EndsThereWithItsMessageReleasedAndTheFileLeftOpen) {
    controller->refuseUploadFrame(GetParam().frame);
    expectFailure(GetParam());
    EXPECT_TRUE(controller->files().empty());
}

TEST_P(RefusedUpload, DoesNotDisturbTheNextOne) {
    controller->refuseUploadFrame(GetParam().frame);
    expectOutcome(GetParam().message);
    upload(pattern(1000), "a.bin");
    expectOutcome("File Upload Successful !");
    upload(pattern(1000), "b.bin");
    EXPECT_THAT(controller->files(), testing::ElementsAre(testing::Pair("b.bin", pattern(1000))));
}

INSTANTIATE_TEST_SUITE_P(At, RefusedUpload, testing::ValuesIn(stages()),
                         [](const auto& test) { return test.param.name; });

class UnansweredUpload : public FailingUpload,
                         public testing::WithParamInterface<std::tuple<Stage, int>> {
protected:
    const Stage& stage() const { return std::get<0>(GetParam()); }
    int code() const { return std::get<1>(GetParam()); }
};

TEST_P(UnansweredUpload, EndsThereWithItsMessageReleasedAndTheFileLeftOpen) {
    bus.inject({.function = "libusb_bulk_transfer",
                .nth = stage().frame,
                .result = code(),
                .endpoint = 0x81});
    expectFailure(stage());
}

TEST_P(UnansweredUpload, EndsThereEvenWhenAnAcceptingByteArrived) {
    bus.inject({.function = "libusb_bulk_transfer",
                .nth = stage().frame,
                .result = code(),
                .reply = Bytes{0x00},
                .endpoint = 0x81});
    expectFailure(stage());
}

INSTANTIATE_TEST_SUITE_P(
    With, UnansweredUpload,
    testing::Combine(testing::ValuesIn(stages()),
                     testing::Values(LIBUSB_ERROR_IO, LIBUSB_ERROR_ACCESS, LIBUSB_ERROR_NO_DEVICE,
                                     LIBUSB_ERROR_BUSY, LIBUSB_ERROR_TIMEOUT, LIBUSB_ERROR_OVERFLOW,
                                     LIBUSB_ERROR_PIPE, LIBUSB_ERROR_NO_MEM, LIBUSB_ERROR_OTHER)),
    [](const auto& test) {
        return std::get<0>(test.param).name + "_error" + std::to_string(-std::get<1>(test.param));
    });

/// An upload of 1000 bytes makes eight transfers.
class UploadUnpluggedAt : public FailingUpload, public testing::WithParamInterface<int> {};

TEST_P(UploadUnpluggedAt, EndsWithTheMessageOfTheFrame) {
    const Stage& stage = stages().at(static_cast<std::size_t>((GetParam() - 1) / 2));
    bus.inject({.function = "libusb_bulk_transfer", .nth = GetParam(), .unplug = true});
    expectOutcome(stage.message);
    upload(pattern(1000), "a.bin");
    EXPECT_EQ(callLines().size(), linesUpTo(stage.frame).size());
    expectReleased();
    EXPECT_EQ(support::timesOpen(folder.path() / "local.bin"), 1) << "left open on purpose";
}

INSTANTIATE_TEST_SUITE_P(Transfer, UploadUnpluggedAt, testing::Range(1, 9));

TEST_F(FailingUpload, TimesOutWhenTheControllerNeverAnswers) {
    bus.reset();
    bus.plug({});
    const auto before = bus.now();
    expectOutcome("File Open Error");
    upload(pattern(1000), "a.bin");
    EXPECT_GE(bus.now() - before, 1000U);
    expectReleased();
}

TEST_F(Upload, WithoutControllerSaysAndDoesNothing) {
    upload(pattern(1000), "a.bin");
    EXPECT_EQ(callLines(), support::emptyBusLines());
    EXPECT_EQ(support::timesOpen(folder.path() / "local.bin"), 0);
    EXPECT_EQ(dialogs.seen(), 0);
}

TEST_F(Upload, WithoutControllerDoesNotMissTheFile) {
    usb.uploadFile((folder.path() / "missing").c_str(), "a.bin");
    EXPECT_EQ(callLines(), support::emptyBusLines());
    EXPECT_EQ(dialogs.seen(), 0);
}

TEST_F(Upload, WithTheClaimRefusedSaysAndSendsNothing) {
    bus.plug({.refuseClaim = true});
    upload(pattern(1000), "a.bin");
    EXPECT_EQ(callLines(), support::joined({support::setupLines(), {"libusb_close #0"}}));
    EXPECT_EQ(support::timesOpen(folder.path() / "local.bin"), 0);
    EXPECT_EQ(dialogs.seen(), 0);
}

}  // namespace
