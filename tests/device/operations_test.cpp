// Every operation in every situation, call by call.

#include "tests/device/operations.h"

#include <tuple>

#include "tests/support/device_link.h"

namespace {

using simulator::Bus;
using support::aboutDevice;
using support::callLines;
using support::joined;
using support::Lines;

const simulator::Device Mouse = {.vendor = 0x046D, .product = 0xC077, .productString = "Mouse"};
const simulator::Device SameVendor = {.vendor = 0x0314, .product = 0xE456};
const simulator::Device SameProduct = {.vendor = 0x0315, .product = 0xE457};

constexpr const char* ReadString = "libusb_get_string_descriptor_ascii";

/// A bus, and the calls that a `setup` makes on it.
struct Situation {
    std::string name;
    std::function<void(Bus&)> prepare;
    Lines setup;
    int device = 0;  ///< the controller that is used
};

std::ostream& operator<<(std::ostream& stream, const Situation& each) {
    return stream << each.name;
}

constexpr auto CaseName = [](const auto& test) {
    return std::get<0>(test.param).name + "_" + std::get<1>(test.param).name;
};

/// Found under a name or with an error on the way that does not matter: the calls are the same.
Situation foundAsUsual(std::string name, std::function<void(Bus&)> prepare) {
    return {std::move(name), std::move(prepare), support::setupLines()};
}

const std::vector<Situation>& found() {
    static const std::vector<Situation> all = {
        foundAsUsual("StandardController", [](Bus& bus) { bus.plugController(); }),
        foundAsUsual(
            "XlController",
            [](Bus& bus) { bus.plugController({.board = simulator::Board::Xl}, "LUMADOT XL"); }),
        foundAsUsual("UnknownName", [](Bus& bus) { bus.plugController({}, "SOMETHING"); }),
        foundAsUsual("NameUnreadable",
                     [](Bus& bus) {
                         bus.plugController();
                         bus.inject({.function = ReadString, .result = LIBUSB_ERROR_PIPE});
                     }),
        foundAsUsual("InitialisationFailing",
                     [](Bus& bus) {
                         bus.plugController();
                         bus.inject({.function = "libusb_init", .result = LIBUSB_ERROR_OTHER});
                     }),
        {"TwoControllers",
         [](Bus& bus) {
             bus.plugController();
             bus.plugController({}, "LUMADOT XL");
         },
         support::setupLines()},
        {"ForeignDevicesBeforeIt",
         [](Bus& bus) {
             bus.plug(Mouse);
             bus.plug(SameVendor);
             bus.plug(SameProduct);
             bus.plugController();
         },
         {"libusb_init", "libusb_get_device_list", "libusb_get_device_descriptor #0",
          "libusb_get_device_descriptor #1", "libusb_get_device_descriptor #2",
          "libusb_get_device_descriptor #3", "libusb_open #3",
          "libusb_get_string_descriptor_ascii index 2 length 256 #3", "libusb_free_device_list",
          "libusb_claim_interface 0 #3"},
         3},
    };
    return all;
}

class OperationWithController
    : public support::DeviceLink,
      public testing::WithParamInterface<std::tuple<Operation, Situation>> {
protected:
    OperationWithController() { situation().prepare(bus); }
    const Operation& operation() const { return std::get<0>(GetParam()); }
    const Situation& situation() const { return std::get<1>(GetParam()); }
};

TEST_P(OperationWithController, SetsUpTransfersAndReleases) {
    operation().run();
    const Lines own = joined({operation().transfers, support::releaseLines()});
    EXPECT_EQ(callLines(), joined({situation().setup, aboutDevice(situation().device, own)}));
}

TEST_P(OperationWithController, ReportsThatThereIsOne) {
    EXPECT_TRUE(operation().run().value_or(true));
}

TEST_P(OperationWithController, LeavesNothingOpenClaimedOrListed) {
    operation().run();
    expectReleased();
}

INSTANTIATE_TEST_SUITE_P(Every, OperationWithController,
                         testing::Combine(testing::ValuesIn(operations()),
                                          testing::ValuesIn(found())),
                         CaseName);

/// What a `setup` that found no usable controller leaves behind.
struct Remains {
    int openHandles = 0;
    int claimedInterfaces = 0;
    int deviceLists = 0;
    bool handle = false;  ///< the global handle is not null
};

struct Failure : Situation {
    Remains remains;
};

const Lines TwoForeignDevices = {"libusb_init", "libusb_get_device_list",
                                 "libusb_get_device_descriptor #0",
                                 "libusb_get_device_descriptor #1"};
const Lines OpenRefused = {"libusb_init", "libusb_get_device_list",
                           "libusb_get_device_descriptor #0", "libusb_open #0"};

const std::vector<Failure>& failures() {
    static const std::vector<Failure> all = {
        {{"EmptyBus", [](Bus&) {}, support::emptyBusLines()}, {.deviceLists = 1}},
        {{"ForeignDevicesOnly",
          [](Bus& bus) {
              bus.plug(SameVendor);
              bus.plug(SameProduct);
          },
          TwoForeignDevices},
         {.deviceLists = 1}},
        {{"EnumerationFailing",
          [](Bus& bus) {
              bus.plugController();
              bus.inject({.function = "libusb_get_device_list", .result = LIBUSB_ERROR_NO_MEM});
          },
          support::emptyBusLines()},
         {}},
        {{"DescriptorUnreadable",
          [](Bus& bus) {
              bus.plugController();
              bus.inject(
                  {.function = "libusb_get_device_descriptor", .result = LIBUSB_ERROR_OTHER});
          },
          {"libusb_init", "libusb_get_device_list", "libusb_get_device_descriptor #0"}},
         {.deviceLists = 1}},
        {{"OpenRefused", [](Bus& bus) { bus.plug({.refuseOpen = true}); }, OpenRefused},
         {.deviceLists = 1}},
        {{"OpenRefusedByTheFirstOfTwo",
          [](Bus& bus) {
              bus.plug({.refuseOpen = true});
              bus.plugController();
          },
          OpenRefused},
         {.deviceLists = 1}},
        {{"ClaimRefused", [](Bus& bus) { bus.plug({.refuseClaim = true}); },
          joined({support::setupLines(), {"libusb_close #0"}})},
         {.handle = true}},
        {{"ClaimRefusedAndNameUnreadable",
          [](Bus& bus) { bus.plug({.stringResult = LIBUSB_ERROR_PIPE, .refuseClaim = true}); },
          joined({support::setupLines(), {"libusb_close #0"}})},
         {.handle = true}},
        {{"NameReadReturningZero", [](Bus& bus) { bus.plug({.stringResult = 0}); },
          support::setupLines()},
         {.openHandles = 1, .claimedInterfaces = 1, .handle = true}},
    };
    return all;
}

class OperationWithoutController
    : public support::DeviceLink,
      public testing::WithParamInterface<std::tuple<Operation, Failure>> {
protected:
    OperationWithoutController() { failure().prepare(bus); }
    const Operation& operation() const { return std::get<0>(GetParam()); }
    const Failure& failure() const { return std::get<1>(GetParam()); }
};

TEST_P(OperationWithoutController, MakesNoCallButThoseOfSetup) {
    operation().run();
    EXPECT_EQ(callLines(), failure().setup);
}

TEST_P(OperationWithoutController, ReportsThatThereIsNone) {
    EXPECT_FALSE(operation().run().value_or(false));
}

TEST_P(OperationWithoutController, ReleasesWhatSetupReleasesAndNoMore) {
    operation().run();
    EXPECT_EQ(bus.openHandles(), failure().remains.openHandles);
    EXPECT_EQ(bus.claimedInterfaces(), failure().remains.claimedInterfaces);
    EXPECT_EQ(bus.deviceLists(), failure().remains.deviceLists);
    EXPECT_EQ(MyLibusbDeviceHandle != nullptr, failure().remains.handle);
}

TEST_P(OperationWithoutController, ChangesNoSettingAndNoText) {
    config =
        support::recordOf({0x40, 0x41, 0x42, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x4A, 0x4B,
                           0x4C, 0x4D, 0x4E, 0x4F, 0x50, 0x51, 0x52, 0x53, 0x54, 0x55, 0x56});
    std::strcpy(versionString, "V4.01a");
    std::strcpy(UIDString, "0123456789");
    operation().run();
    EXPECT_THAT(
        support::bytesOf(config),
        testing::ElementsAre(0x40, 0x41, 0x42, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x4A, 0x4B,
                             0x4C, 0x4D, 0x4E, 0x4F, 0x50, 0x51, 0x52, 0x53, 0x54, 0x55, 0x56));
    EXPECT_STREQ(versionString, "V4.01a");
    EXPECT_STREQ(UIDString, "0123456789");
}

INSTANTIATE_TEST_SUITE_P(Every, OperationWithoutController,
                         testing::Combine(testing::ValuesIn(operations()),
                                          testing::ValuesIn(failures())),
                         CaseName);

/// A transfer's own result is ignored, except that of a read.
class OperationWithAFailingWrite : public support::DeviceLink,
                                   public testing::WithParamInterface<Operation> {};

TEST_P(OperationWithAFailingWrite, StillReportsAControllerAndReleasesIt) {
    bus.plugController();
    // The reply comes all the same, so that nothing but the write fails.
    failTransfer(0x01, LIBUSB_ERROR_TIMEOUT);
    answer({});
    EXPECT_TRUE(GetParam().run().value_or(true));
    expectReleased();
}

INSTANTIATE_TEST_SUITE_P(Every, OperationWithAFailingWrite, testing::ValuesIn(operations()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
