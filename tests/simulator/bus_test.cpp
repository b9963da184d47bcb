#include "simulator/bus.h"

#include "tests/simulator/bus_fixture.h"

using simulator::Packet;

namespace {

struct BusTest : BusFixture {};

libusb_device_handle* const Invented = reinterpret_cast<libusb_device_handle*>(0x1234);

}  // namespace

TEST_F(BusTest, EmptyBusListsNothing) { EXPECT_TRUE(devices().empty()); }

// Contexts are counted by the process: without the fixture, which has initialised one, and on top
// of what the tests before this one, in any order, have left.
TEST(BusContext, IsCountedUntilItIsGivenBackAsOftenAsInitialised) {
    const simulator::Bus& bus = simulator::Bus::instance();
    const int before = bus.openContexts();
    libusb_context* other = nullptr;
    EXPECT_EQ(libusb_init(nullptr), 0);
    EXPECT_EQ(libusb_init(nullptr), 0);
    EXPECT_EQ(libusb_init(&other), 0);
    EXPECT_NE(other, nullptr);
    EXPECT_EQ(bus.openContexts(), before + 3);
    libusb_exit(nullptr);
    libusb_exit(other);
    EXPECT_EQ(bus.openContexts(), before + 1);
    libusb_exit(nullptr);
    EXPECT_EQ(bus.openContexts(), before);
}

TEST(BusContext, OfAnotherClientServesAsTheDefault) {
    libusb_context* other = nullptr;
    libusb_device** list = nullptr;
    libusb_init(&other);
    EXPECT_EQ(libusb_get_device_list(nullptr, &list), 0);
    libusb_free_device_list(list, 1);
    libusb_exit(other);
}

TEST(BusContextDeathTest, ThatNoInitialisationEverMadeEndsTheProgram) {
    libusb_device** list = nullptr;
    EXPECT_DEATH(libusb_get_device_list(nullptr, &list), "context that is not initialised");
    EXPECT_DEATH(libusb_exit(nullptr), "context that is not initialised");
    simulator::Bus::instance().inject({.function = "libusb_init", .result = LIBUSB_ERROR_OTHER});
    EXPECT_EQ(libusb_init(nullptr), LIBUSB_ERROR_OTHER);
    EXPECT_DEATH(libusb_get_device_list(nullptr, &list), "context that is not initialised");
}

TEST(BusContextDeathTest, ThatWasGivenBackEndsTheProgram) {
    libusb_context* other = nullptr;
    libusb_device** list = nullptr;
    libusb_init(&other);
    libusb_exit(other);
    EXPECT_DEATH(libusb_get_device_list(other, &list), "context that is not initialised");
}

TEST_F(BusTest, DevicesAreListedInTheOrderOfPlugging) {
    EXPECT_EQ(bus.plug({.vendor = 0x1111, .product = 0x2222}), 0);
    bus.plugController();
    EXPECT_EQ(bus.plug({.vendor = 0x3333}), 2);
    bus.unplug(0);
    const auto found = devices();
    ASSERT_EQ(found.size(), 2U);
    libusb_device_descriptor descriptor = {};
    EXPECT_EQ(libusb_get_device_descriptor(found[0], &descriptor), 0);
    EXPECT_EQ(descriptor.bLength, 18);
    EXPECT_EQ(descriptor.bDescriptorType, 1);
    EXPECT_EQ(descriptor.idVendor, 0x0314);
    EXPECT_EQ(descriptor.idProduct, 0xE457);
    EXPECT_EQ(descriptor.iProduct, 2);
    EXPECT_EQ(last().device, 1);
    EXPECT_EQ(libusb_get_device_descriptor(found[1], &descriptor), 0);
    EXPECT_EQ(descriptor.idVendor, 0x3333);
    EXPECT_EQ(last().device, 2);
}

TEST_F(BusTest, ListEndsWithNullAndIsCountedUntilFreed) {
    bus.plugController();
    libusb_device** list = nullptr;
    ASSERT_EQ(libusb_get_device_list(nullptr, &list), 1);
    EXPECT_NE(list[0], nullptr);
    EXPECT_EQ(list[1], nullptr);
    EXPECT_EQ(bus.deviceLists(), 1);
    libusb_free_device_list(list, 1);
    EXPECT_EQ(bus.deviceLists(), 0);
}

TEST_F(BusTest, ListThatIsFreedTwiceIsReportedAndNoListIsNot) {
    libusb_device** list = nullptr;
    libusb_get_device_list(nullptr, &list);
    bus.clearCalls();
    libusb_free_device_list(list, 1);
    libusb_free_device_list(list, 1);
    libusb_free_device_list(nullptr, 1);
    ASSERT_EQ(bus.calls().size(), 3U);
    EXPECT_FALSE(bus.calls()[0].stale);
    EXPECT_TRUE(bus.calls()[1].stale);
    EXPECT_FALSE(bus.calls()[2].stale);
    EXPECT_EQ(bus.deviceLists(), 0);
}

TEST_F(BusTest, ListFromBeforeAResetIsStillFreed) {
    libusb_device** list = nullptr;
    libusb_get_device_list(nullptr, &list);
    bus.reset();
    EXPECT_EQ(bus.deviceLists(), 0);
    libusb_free_device_list(list, 1);  // A list that stayed behind would be reported as a leak.
    EXPECT_EQ(bus.deviceLists(), 0);
}

TEST_F(BusTest, EachOpenGivesAHandleOfItsOwn) {
    bus.plugController();
    bus.plugController();
    libusb_device_handle* handles[] = {open(0), open(0), open(1)};
    EXPECT_NE(handles[0], handles[1]);
    EXPECT_NE(handles[1], handles[2]);
    EXPECT_EQ(last().device, 1);
    EXPECT_EQ(bus.openHandles(), 3);
    for (libusb_device_handle* handle : handles) {
        libusb_close(handle);
    }
    EXPECT_EQ(bus.openHandles(), 0);
}

TEST_F(BusTest, RefusedOrGoneDeviceIsNotOpened) {
    bus.plug({.refuseOpen = true});
    bus.plugController();
    const auto found = devices();
    bus.unplug(1);
    libusb_device_handle* handle = Invented;
    EXPECT_EQ(libusb_open(found[0], &handle), LIBUSB_ERROR_ACCESS);
    EXPECT_EQ(libusb_open(found[1], &handle), LIBUSB_ERROR_NO_DEVICE);
    EXPECT_EQ(libusb_open(nullptr, &handle), LIBUSB_ERROR_NO_DEVICE);
    EXPECT_TRUE(last().stale);
    EXPECT_EQ(handle, Invented);
    EXPECT_EQ(bus.openHandles(), 0);
}

TEST_F(BusTest, StringReadGivesTheProductStringAndItsLength) {
    bus.plugController({}, "LUMADOT XL");
    libusb_device_handle* handle = open();
    unsigned char buffer[256];
    std::fill(std::begin(buffer), std::end(buffer), 0xEE);
    EXPECT_EQ(libusb_get_string_descriptor_ascii(handle, 2, buffer, 256), 10);
    EXPECT_STREQ(reinterpret_cast<char*>(buffer), "LUMADOT XL");
    EXPECT_EQ(buffer[11], 0xEE);
    EXPECT_EQ(last().length, 256);
    EXPECT_EQ(libusb_get_string_descriptor_ascii(handle, 2, buffer, 5), 4);
    EXPECT_STREQ(reinterpret_cast<char*>(buffer), "LUMA");
    EXPECT_EQ(libusb_get_string_descriptor_ascii(handle, 2, buffer, 0), LIBUSB_ERROR_INVALID_PARAM);
    EXPECT_EQ(libusb_get_string_descriptor_ascii(handle, 0, buffer, 256),
              LIBUSB_ERROR_INVALID_PARAM);
    EXPECT_EQ(libusb_get_string_descriptor_ascii(handle, 1, buffer, 256), LIBUSB_ERROR_PIPE);
}

TEST_F(BusTest, StringReadGivesTheResultThatTheDeviceIsGiven) {
    for (const int result : {0, -4, -9, 3}) {
        bus.reset();
        bus.plug({.stringResult = result});
        unsigned char buffer[256] = {0xEE};
        EXPECT_EQ(libusb_get_string_descriptor_ascii(open(), 2, buffer, 256), result);
        if (result > 0) {
            EXPECT_STREQ(reinterpret_cast<char*>(buffer), "LUM");
        } else {
            EXPECT_EQ(buffer[0], 0xEE);
        }
    }
}

TEST_F(BusTest, InterfaceIsHeldByOneHandle) {
    bus.plugController();
    libusb_device_handle* first = open();
    libusb_device_handle* second = open();
    EXPECT_EQ(libusb_claim_interface(first, 0), 0);
    EXPECT_EQ(libusb_claim_interface(first, 0), 0);
    EXPECT_EQ(libusb_claim_interface(second, 0), LIBUSB_ERROR_BUSY);
    EXPECT_EQ(bus.claimedInterfaces(), 1);
    EXPECT_EQ(libusb_release_interface(second, 0), LIBUSB_ERROR_NOT_FOUND);
    EXPECT_EQ(libusb_release_interface(first, 0), 0);
    EXPECT_EQ(bus.claimedInterfaces(), 0);
    EXPECT_EQ(libusb_claim_interface(second, 0), 0);
    EXPECT_EQ(libusb_claim_interface(second, 1), LIBUSB_ERROR_NOT_FOUND);
    EXPECT_EQ(last().endpoint, 1);
}

TEST_F(BusTest, ClosingAHandleReleasesItsInterface) {
    bus.plugController();
    libusb_device_handle* first = openAndClaim();
    libusb_device_handle* second = open();
    libusb_close(second);
    EXPECT_EQ(bus.claimedInterfaces(), 1);
    libusb_close(first);
    EXPECT_EQ(bus.claimedInterfaces(), 0);
    openAndClaim();
}

TEST_F(BusTest, RefusedClaimIsBusy) {
    bus.plug({.refuseClaim = true});
    EXPECT_EQ(libusb_claim_interface(open(), 0), LIBUSB_ERROR_BUSY);
    EXPECT_EQ(bus.claimedInterfaces(), 0);
}

TEST_F(BusTest, NullClosedAndInventedHandlesAreSurvivedAndLogged) {
    bus.plugController();
    libusb_device_handle* closed = openAndClaim();
    libusb_close(closed);
    unsigned char buffer[8] = {};
    for (libusb_device_handle* handle :
         {static_cast<libusb_device_handle*>(nullptr), closed, Invented}) {
        bus.clearCalls();
        EXPECT_EQ(libusb_claim_interface(handle, 0), LIBUSB_ERROR_NO_DEVICE);
        EXPECT_EQ(libusb_release_interface(handle, 0), LIBUSB_ERROR_NO_DEVICE);
        EXPECT_EQ(libusb_get_string_descriptor_ascii(handle, 2, buffer, 8), LIBUSB_ERROR_NO_DEVICE);
        EXPECT_EQ(libusb_bulk_transfer(handle, 0x81, buffer, 8, nullptr, 5),
                  LIBUSB_ERROR_NO_DEVICE);
        libusb_close(handle);
        ASSERT_EQ(bus.calls().size(), 5U);
        for (const simulator::Call& call : bus.calls()) {
            EXPECT_TRUE(call.stale) << call.function;
            EXPECT_EQ(call.device, -1) << call.function;
        }
    }
}

TEST_F(BusTest, DeviceThatHasGoneAnswersNoDeviceUntilClosed) {
    bus.plugController();
    libusb_device_handle* handle = openAndClaim();
    bus.unplug(0);
    unsigned char buffer[8] = {};
    EXPECT_EQ(libusb_claim_interface(handle, 0), LIBUSB_ERROR_NO_DEVICE);
    EXPECT_EQ(libusb_get_string_descriptor_ascii(handle, 2, buffer, 8), LIBUSB_ERROR_NO_DEVICE);
    EXPECT_EQ(libusb_bulk_transfer(handle, 0x01, buffer, 8, nullptr, 5), LIBUSB_ERROR_NO_DEVICE);
    EXPECT_EQ(libusb_release_interface(handle, 0), LIBUSB_ERROR_NO_DEVICE);
    EXPECT_FALSE(last().stale);
    libusb_close(handle);
    EXPECT_EQ(bus.openHandles(), 0);
    EXPECT_EQ(bus.claimedInterfaces(), 0);
}

TEST_F(BusTest, ResetMakesTheBusAsNew) {
    bus.plugController();
    libusb_device_handle* handle = openAndClaim();
    bus.inject({.nth = 0, .result = LIBUSB_ERROR_OTHER});
    bus.reset();
    EXPECT_EQ(bus.openHandles(), 0);
    EXPECT_EQ(bus.claimedInterfaces(), 0);
    EXPECT_TRUE(bus.calls().empty());
    EXPECT_TRUE(devices().empty());
    EXPECT_EQ(libusb_claim_interface(handle, 0), LIBUSB_ERROR_NO_DEVICE);
    bus.plugController();
    EXPECT_NE(open(), handle);
}

TEST_F(BusTest, UnpluggingWhatIsNotThereIsSurvived) {
    bus.unplug(-1);
    bus.unplug(0);
    EXPECT_TRUE(devices().empty());
}

TEST_F(BusTest, ErrorsHaveTheirNames) {
    EXPECT_STREQ(libusb_error_name(0), "LIBUSB_SUCCESS");
    EXPECT_STREQ(libusb_error_name(-7), "LIBUSB_ERROR_TIMEOUT");
    EXPECT_STREQ(libusb_error_name(-99), "LIBUSB_ERROR_OTHER");
    EXPECT_STREQ(libusb_error_name(-50), "**UNKNOWN**");
    EXPECT_STREQ(libusb_strerror(-7), "Timed out");
}
