// The blocks of the dump files, against files that were made once and for all.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "device/dump_format.h"
#include "tests/device/capture/naive_decoder.h"
#include "tests/support/byte_text.h"
#include "tests/support/page_examples.h"

namespace {

using naive::Bytes;

struct Golden {
    std::filesystem::path path;
    int mode;
    bool xl;
};

/// The files' names say what they are: "xl_8.md".
std::vector<Golden> goldenFiles() {
    std::vector<Golden> files;
    for (const auto& entry : std::filesystem::directory_iterator(LUMADOT_GOLDEN_FOLDER)) {
        const std::string name = entry.path().stem().string();
        const auto line = name.find('_');
        files.push_back({entry.path(), std::stoi(name.substr(line + 1)), name.starts_with("xl")});
    }
    std::ranges::sort(files, {}, &Golden::path);  // The tests' order is the same everywhere.
    return files;
}

class GoldenFrame : public testing::TestWithParam<Golden> {
protected:
    const Golden golden = GetParam();
    const InputModeInfo& mode = inputMode(static_cast<std::uint8_t>(golden.mode));
    const Bytes reply = support::pageExample(golden.path, "reply");
    const Bytes planes{reply.begin() + 4, reply.end()};
};

TEST_P(GoldenFrame, BecomesTheTextOfItsFile) {
    dump::TextEncoder encoder(golden.xl ? dump::XlDots : mode.dots,
                              golden.xl ? dump::XlDisplay : dump::StandardDisplay);
    const auto text = encoder.encode(dump::timeStamp(reply), planes);
    EXPECT_EQ(Bytes(text.begin(), text.end()), support::pageExample(golden.path, "text"));
}

TEST_P(GoldenFrame, BecomesTheRawBlockOfItsFileIfItsModeHasOne) {
    const bool inFile =
        testing::Matches(testing::Contains("raw"))(support::pageExamples(golden.path));
    ASSERT_EQ(mode.rawFile, inFile);
    if (inFile) {
        EXPECT_EQ(support::byteText(dump::rawHeader(mode.capturePlanes)),
                  support::byteText(support::pageExample(golden.path, "raw-header")));
        EXPECT_EQ(
            support::byteText(dump::rawBlock(dump::timeStamp(reply), mode.capturePlanes, planes)),
            support::byteText(support::pageExample(golden.path, "raw")));
    }
}

INSTANTIATE_TEST_SUITE_P(Files, GoldenFrame, testing::ValuesIn(goldenFiles()),
                         [](const auto& row) { return row.param.path.stem().string(); });

TEST(GoldenFrames, AreThereForEveryModeAndBothDisplays) {
    EXPECT_EQ(goldenFiles().size(), naive::allModes().size() + 3);
}

}  // namespace
