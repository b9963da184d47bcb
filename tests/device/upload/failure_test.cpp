// Uploads that end early. Every failing call of an upload, and what is left then, stands in the
// tables of faults/.

#include "tests/device/upload/upload_fixture.h"

namespace {

using support::pattern;

/// The frames of an upload of 1000 bytes, and the message when one of them is refused.
struct Stage {
    std::string name;
    int frame;  ///< 1 = the first that is sent
    std::string message;
};

void PrintTo(const Stage& each, std::ostream* out) { *out << each.name; }

class RefusedUpload : public Upload, public testing::WithParamInterface<Stage> {};

TEST_P(RefusedUpload, SaysSoOnceTheControllerIsReleasedAndDoesNotDisturbTheNextOne) {
    plug();
    controller->refuseUploadFrame(GetParam().frame);
    expectOutcome(GetParam().message);
    upload(pattern(1000), "a.bin");
    EXPECT_EQ(support::timesOpen(folder.path() / "local.bin"), 1) << "left open on purpose";
    expectOutcome("File Upload Successful !");
    upload(pattern(1000), "b.bin");
    EXPECT_THAT(controller->files(), testing::ElementsAre(testing::Pair("b.bin", pattern(1000))));
}

INSTANTIATE_TEST_SUITE_P(At, RefusedUpload,
                         testing::Values(Stage{"Open", 1, "File Open Error"},
                                         Stage{"FullBlock", 2, "File Transfer Error"},
                                         Stage{"LastBlock", 3, "File Transfer Error"},
                                         Stage{"Close", 4, "File Close Error"}),
                         [](const auto& test) { return test.param.name; });

TEST_F(Upload, TimesOutWhenTheControllerNeverAnswers) {
    bus.plug({});
    const auto before = bus.now();
    expectOutcome("File Open Error");
    upload(pattern(1000), "a.bin");
    EXPECT_GE(bus.now() - before, 1000U);
    expectReleased();
}

TEST_F(Upload, WithoutControllerDoesNotMissTheFile) {
    send(folder.path() / "missing");
    EXPECT_EQ(support::callLines(), support::emptyBusLines());
    EXPECT_EQ(dialogs.seen(), 0);
}

}  // namespace
