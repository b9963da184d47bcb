#include <gmock/gmock.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <typeinfo>

#include "device/interfaceUSB.h"
#include "simulator/bus.h"

namespace {

using testing::Each;
using testing::ElementsAre;

TEST(StartState, HasTheUsbObjectConstructedBeforeMain) {
    const USBClass* volatile object = &usb;
    const USBClass& read = *object;
    EXPECT_EQ(typeid(read), typeid(USBClass));  // Reads the object's table of virtual functions.
}

TEST(StartState, HasNoOpenHandleAndNoDeviceList) {
    EXPECT_EQ(MyLibusbDeviceHandle, nullptr);
    EXPECT_EQ(devs, nullptr);
}

TEST(StartState, HasTheFactorySettingsWithZerosInBytes10To18) {
    std::array<std::uint8_t, 23> bytes;
    std::memcpy(bytes.data(), &config, bytes.size());
    EXPECT_THAT(bytes, ElementsAre(0, 0, 15, 10, 15, 12, 15, 0, 15, 15,  // bytes 0..9
                                   0, 0, 0, 0, 0, 0, 0, 0, 0,            // bytes 10..18
                                   0, 1, 1, 30));                        // bytes 19..22
}

TEST(StartState, HasEmptyTexts) {
    EXPECT_EQ(sizeof versionString, 9U);
    EXPECT_THAT(versionString, Each('\0'));
    EXPECT_EQ(sizeof UIDString, 64U);
    EXPECT_THAT(UIDString, Each('\0'));
}

TEST(UsbObject, HoldsNoDataOfItsOwn) { EXPECT_EQ(sizeof(USBClass), sizeof(void*)); }

TEST(UsbObject, HasAVirtualDestructor) { EXPECT_TRUE(std::has_virtual_destructor_v<USBClass>); }

TEST(UsbObject, LeavesTheBusAloneWhenItComesAndGoes) {
    { const USBClass another; }
    EXPECT_THAT(simulator::Bus::instance().calls(), testing::IsEmpty());
}

}  // namespace
