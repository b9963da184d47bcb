// Every table of the pages, and every number in their text, is what the code has.

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>

#include "tests/device/pages/sections.h"

namespace pages {

namespace {

const std::filesystem::path Protocol = LUMADOT_DOCS "/protocol.md";
const std::filesystem::path Files = LUMADOT_DOCS "/file-formats.md";

struct Part {
    std::filesystem::path page;
    Section section;
};

void PrintTo(const Part& part, std::ostream* out) { *out << part.section.name; }

std::vector<Part> partsOf(const std::filesystem::path& page) {
    std::vector<Part> parts;
    const auto add = [&](const std::vector<Section>& sections) {
        for (const Section& section : sections) {
            parts.push_back({page, section});
        }
    };
    if (page == Files) {
        add(fileSections());
    } else {
        add(sentSections());
        add(answerSections());
    }
    return parts;
}

constexpr auto NameOfPart = [](const auto& test) { return test.param.section.name; };

class APage : public testing::TestWithParam<Part> {};

TEST_P(APage, SaysWhatTheCodeHas) {
    Page page(GetParam().page);
    GetParam().section.read(page);
}

INSTANTIATE_TEST_SUITE_P(Protocol, APage, testing::ValuesIn(partsOf(Protocol)), NameOfPart);
INSTANTIATE_TEST_SUITE_P(Files, APage, testing::ValuesIn(partsOf(Files)), NameOfPart);

/// What nobody has compared on the page, but for how the examples are written.
std::vector<std::string> unreadOn(const std::filesystem::path& file, const std::string& notation) {
    Page page(file);
    for (const Part& part : partsOf(file)) {
        part.section.read(page);
    }
    page.expect(notation);
    return page.unread();
}

TEST(TheProtocol, HasNoTableAndNoNumberThatIsNotCompared) {
    EXPECT_THAT(unreadOn(Protocol, "`00*2046` stands for 2046 bytes of 00."), testing::IsEmpty());
}

TEST(TheFileFormats, HaveNoTableAndNoNumberThatIsNotCompared) {
    EXPECT_THAT(unreadOn(Files, "`00*9` stands for 9 bytes of 00."), testing::IsEmpty());
}

}  // namespace

}  // namespace pages
