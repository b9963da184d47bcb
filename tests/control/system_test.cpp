// What lumadotctl finds out from the system: who holds a device, and whether the rule is installed.

#include <gtest/gtest.h>
#include <libusb.h>

#include <filesystem>
#include <fstream>

#include "control/findings.h"
#include "control/holder.h"
#include "control/link.h"
#include "control/udev_rule.h"
#include "tests/support/temporary_folder.h"

namespace {

namespace fs = std::filesystem;

class HolderOf : public testing::Test {
protected:
    /// A process as the system shows it, with one open file.
    void process(const std::string& number, const std::string& name, const std::string& open) {
        fs::create_directories(folder.path() / number / "fd");
        fs::create_symlink(open, folder.path() / number / "fd" / "3");
        std::ofstream(folder.path() / number / "comm") << name << '\n';
    }

    support::TemporaryFolder folder;
};

TEST_F(HolderOf, IsTheProcessThatHasTheDevicesFileOpen) {
    process("12", "shell", "/dev/bus/usb/002/017");
    process("340", "lumadot-tool", "/dev/bus/usb/001/017");
    fs::create_directories(folder.path() / "sys" / "fd");
    const auto holder = control::holderOf(1, 17, folder.path());
    ASSERT_TRUE(holder.has_value());
    EXPECT_EQ(holder->program, "lumadot-tool");
    EXPECT_EQ(holder->pid, 340);
    EXPECT_FALSE(control::holderOf(1, 18, folder.path()).has_value());
}

TEST_F(HolderOf, IsNeverTheProgramItself) {
    process("340", "lumadotctl", "/dev/bus/usb/001/017");
    fs::create_symlink("340", folder.path() / "self");
    EXPECT_FALSE(control::holderOf(1, 17, folder.path()).has_value());
}

TEST_F(HolderOf, IsNobodyWhereTheSystemDoesNotTell) {
    EXPECT_FALSE(control::holderOf(1, 17, folder.path() / "missing").has_value());
    fs::create_directories(folder.path() / "99");
    EXPECT_FALSE(control::holderOf(1, 17, folder.path()).has_value());
}

TEST(OpeningOnWindows, TellsAMissingDriverFromAnotherProgram) {
    for (const int error : {LIBUSB_ERROR_NOT_SUPPORTED, LIBUSB_ERROR_NOT_FOUND}) {
        const auto finding = control::findings::ofOpeningOnWindows(error);
        ASSERT_TRUE(finding.has_value());
        EXPECT_EQ(finding->name, "no-driver");
        EXPECT_EQ(static_cast<int>(finding->code), 4);
        EXPECT_EQ(finding->message,
                  "The controller is there, but Windows has not bound it to the driver WinUSB.");
    }
    EXPECT_FALSE(control::findings::ofOpeningOnWindows(LIBUSB_ERROR_IO).has_value());
}

TEST(OpeningOnWindows, TellsThatItMayBeAnotherProgramOrAnotherDriver) {
    const auto finding = control::findings::ofOpeningOnWindows(LIBUSB_ERROR_ACCESS);
    ASSERT_TRUE(finding.has_value());
    EXPECT_EQ(finding->name, "busy");
    EXPECT_EQ(static_cast<int>(finding->code), 5);
    EXPECT_EQ(finding->message,
              "Another program is using the controller, or Windows has bound it to a driver other "
              "than WinUSB.");
    EXPECT_EQ(finding->hint,
              "Close that program and try again; if there is none: in the Device Manager, choose "
              "\"WinUsb Device\" as its driver; the README.txt beside this program says how, step "
              "by step.");
}

struct Rule {
    const char* name;
    const char* file;
    const char* text;
    bool counts;
};

class RuleIsInstalled : public testing::TestWithParam<Rule> {};

TEST_P(RuleIsInstalled, WhenAFileOfRulesNamesTheController) {
    const support::TemporaryFolder folder;
    std::ofstream(folder.path() / GetParam().file) << GetParam().text;
    const fs::path folders[] = {folder.path() / "missing", folder.path()};
    EXPECT_EQ(control::isRuleInstalled(folders), GetParam().counts);
}

INSTANTIATE_TEST_SUITE_P(
    Every, RuleIsInstalled,
    testing::Values(Rule{"ours", "65-lumadot.rules",
                         "# The controller\nATTR{idVendor}==\"0314\", ATTR{idProduct}==\"e457\", "
                         "TAG+=\"uaccess\"\n",
                         true},
                    Rule{"upper_case", "a.rules",
                         "ATTR{idVendor}==\"0314\", ATTR{idProduct}==\"E457\"", true},
                    Rule{"commented_out", "a.rules",
                         "#ATTR{idVendor}==\"0314\", ATTR{idProduct}==\"e457\"\n", false},
                    Rule{"another_product", "a.rules",
                         "ATTR{idVendor}==\"0314\", ATTR{idProduct}==\"e456\"\n", false},
                    Rule{"another_vendor", "a.rules",
                         "ATTR{idVendor}==\"0315\", ATTR{idProduct}==\"e457\"\n", false},
                    Rule{"no_rules_file", "a.rules.old",
                         "ATTR{idVendor}==\"0314\", ATTR{idProduct}==\"e457\"\n", false}),
    [](const auto& row) { return row.param.name; });

TEST(Place, IsBusAndPorts) {
    for (const char* const place : {"1-1", "12-3", "1-1.4", "2-1.4.2"}) {
        EXPECT_TRUE(control::isPlace(place)) << place;
    }
    for (const char* const other : {"", "1", "-1", "1-", "1-1-1", "1.1", "1.2-3", "1-.4", "1-4.",
                                    "3A7F00C21D5E9B64", "1-x"}) {
        EXPECT_FALSE(control::isPlace(other)) << other;
    }
}

}  // namespace
