// Endpoint 0, request by request.

#include <gmock/gmock.h>

#include "tests/simulator/server/client.h"

namespace {

using testing::ElementsAre;

class ControlTest : public ClientTest {
protected:
    std::string answer(const std::string& setup, std::uint32_t length = 255) {
        const Lines lines = ask(control(1, setup, length));
        return lines.size() == 1 ? lines[0] : "not one reply";
    }
};

struct Request {
    const char* what;
    const char* setup;
    std::string reply;
};

class StandardRequest : public ControlTest, public testing::WithParamInterface<Request> {};

TEST_P(StandardRequest, IsAnsweredAsByADevice) {
    EXPECT_EQ(answer(GetParam().setup), "1: " + GetParam().reply);
}

const std::string Stall = "-32, 0";

INSTANTIATE_TEST_SUITE_P(
    Of, StandardRequest,
    testing::Values(
        Request{"device", "80 06 00 01 00 00 12 00",
                "0, 18: 12 01 00 02 00 00 00 40 14 03 57 E4 00 01 00 02 00 01"},
        Request{"start_of_device", "80 06 00 01 00 00 08 00", "0, 8: 12 01 00 02 00 00 00 40"},
        Request{"qualifier", "80 06 00 06 00 00 0A 00", "0, 10: 0A 06 00 02 00 00 00 40 01 00"},
        Request{"configuration", "80 06 00 02 00 00 FF 00",
                "0, 32: 09 02 20 00 01 01 00 C0 32 09 04 00 00 02 FF 00 00 00 "
                "07 05 01 02 00 02 00 07 05 81 02 00 02 00"},
        Request{"start_of_configuration", "80 06 00 02 00 00 09 00",
                "0, 9: 09 02 20 00 01 01 00 C0 32"},
        Request{"other_speed", "80 06 00 07 00 00 FF 00",
                "0, 32: 09 07 20 00 01 01 00 C0 32 09 04 00 00 02 FF 00 00 00 "
                "07 05 01 02 40 00 00 07 05 81 02 40 00 00"},
        Request{"languages", "80 06 00 03 00 00 FF 00", "0, 4: 04 03 09 04"},
        Request{"product", "80 06 02 03 09 04 FF 00",
                "0, 16: 10 03 4C 00 55 00 4D 00 41 00 44 00 4F 00 54 00"},
        Request{"nothing_of_product", "80 06 02 03 09 04 00 00", "0, 0"},
        Request{"string_that_is_none", "80 06 01 03 09 04 FF 00", Stall},
        Request{"second_configuration", "80 06 01 02 00 00 FF 00", Stall},
        Request{"second_device", "80 06 01 01 00 00 FF 00", Stall},
        Request{"bos", "80 06 00 0F 00 00 05 00", Stall},
        Request{"interface_descriptor", "80 06 00 04 00 00 FF 00", Stall},
        Request{"device_status", "80 00 00 00 00 00 02 00", "0, 2: 01 00"},
        Request{"interface_status", "81 00 00 00 00 00 02 00", "0, 2: 00 00"},
        Request{"status_of_second_interface", "81 00 00 00 01 00 02 00", Stall},
        Request{"control_endpoint_status", "82 00 00 00 00 00 02 00", "0, 2: 00 00"},
        Request{"control_endpoint_halt_cleared", "02 01 00 00 80 00 00 00", "0, 0"},
        Request{"out_endpoint_status", "82 00 00 00 01 00 02 00", "0, 2: 00 00"},
        Request{"status_of_no_endpoint", "82 00 00 00 02 00 02 00", Stall},
        Request{"get_configuration", "80 08 00 00 00 00 01 00", "0, 1: 01"},
        Request{"set_configuration", "00 09 01 00 00 00 00 00", "0, 0"},
        Request{"set_other_configuration", "00 09 02 00 00 00 00 00", Stall},
        Request{"get_interface", "81 0A 00 00 00 00 01 00", "0, 1: 00"},
        Request{"set_interface", "01 0B 00 00 00 00 00 00", "0, 0"},
        Request{"set_other_setting", "01 0B 01 00 00 00 00 00", Stall},
        Request{"set_second_interface", "01 0B 00 00 01 00 00 00", Stall},
        Request{"set_address", "00 05 07 00 00 00 00 00", "0, 0"},
        Request{"address_out_of_range", "00 05 80 00 00 00 00 00", Stall},
        Request{"remote_wake_up", "00 03 01 00 00 00 00 00", Stall},
        Request{"unknown_endpoint_feature", "02 03 01 00 81 00 00 00", Stall},
        Request{"set_descriptor", "00 07 00 01 00 00 00 00", Stall},
        Request{"windows_signature", "80 06 EE 03 00 00 12 00", Stall},
        Request{"windows_driver", "C0 20 00 00 04 00 28 00", Stall},
        Request{"class_request", "A1 00 00 00 00 00 02 00", Stall},
        Request{"vendor_request", "C0 00 00 00 00 00 02 00", Stall},
        Request{"other_recipient", "83 00 00 00 00 00 02 00", Stall}),
    [](const auto& test) { return test.param.what; });

TEST_F(ControlTest, DescriptorIsCutToTheBufferOfTheUrb) {
    EXPECT_EQ(answer("80 06 00 01 00 00 12 00", 2), "1: 0, 2: 12 01");
}

TEST_F(ControlTest, LargeBoardHasItsOwnName) {
    simulator::ControllerOptions options = device.options();
    options.board = simulator::Board::Xl;
    device.replace(options);
    session->update();
    EXPECT_EQ(session->problem(), "unplugged");
    attach();
    EXPECT_EQ(answer("80 06 02 03 09 04 FF 00"),
              "1: 0, 22: 16 03 4C 00 55 00 4D 00 41 00 44 00 4F 00 54 00 20 00 58 00 4C 00");
}

class WindowsRequest : public ControlTest, public testing::WithParamInterface<Request> {};

TEST_P(WindowsRequest, IsAnsweredByABoardThatDescribesItselfToWindows) {
    simulator::ControllerOptions options = device.options();
    options.windowsDescriptors = true;
    device.replace(options);
    session->update();
    attach();
    EXPECT_EQ(answer(GetParam().setup), "1: " + GetParam().reply);
}

INSTANTIATE_TEST_SUITE_P(
    Of, WindowsRequest,
    testing::Values(
        Request{"signature", "80 06 EE 03 00 00 12 00",
                "0, 18: 12 03 4D 00 53 00 46 00 54 00 31 00 30 00 30 00 20 00"},
        Request{"length_of_driver", "C0 20 00 00 04 00 10 00",
                "0, 16: 28 00 00 00 00 01 04 00 01 00 00 00 00 00 00 00"},
        Request{"driver", "C0 20 00 00 04 00 28 00",
                "0, 40: 28 00 00 00 00 01 04 00 01 00*8 01 57 49 4E 55 53 42 00*16"},
        Request{"properties", "C1 20 00 00 05 00 FF 00",
                "0, 146: 92 00 00 00 00 01 05 00 01 00 88 00 00 00 07 00 00 00 2A 00 "
                "44 00 65 00 76 00 69 00 63 00 65 00 49 00 6E 00 74 00 65 00 72 00 66 00 "
                "61 00 63 00 65 00 47 00 55 00 49 00 44 00 73 00 00 00 50 00 00 00 "
                "7B 00 38 00 35 00 38 00 36 00 63 00 38 00 35 00 31 00 2D 00 30 00 64 00 35 00 "
                "62 00 2D 00 34 00 38 00 61 00 35 00 2D 00 38 00 64 00 64 00 34 00 2D 00 "
                "66 00 66 00 63 00 39 00 36 00 36 00 31 00 65 00 65 00 33 00 37 00 31 00 7D 00 "
                "00 00 00 00"},
        Request{"product", "80 06 02 03 09 04 FF 00",
                "0, 16: 10 03 4C 00 55 00 4D 00 41 00 44 00 4F 00 54 00"},
        Request{"device_of_another_version", "80 06 00 01 00 00 12 00",
                "0, 18: 12 01 00 02 00 00 00 40 14 03 57 E4 01 01 00 02 00 01"},
        Request{"another_code", "C0 21 00 00 04 00 28 00", Stall},
        Request{"another_interface", "C0 20 01 00 04 00 28 00", Stall},
        Request{"another_index", "C0 20 00 00 06 00 28 00", Stall},
        Request{"driver_to_the_board", "40 20 00 00 04 00 00 00", Stall},
        Request{"endpoint", "C2 20 00 00 04 00 28 00", Stall}),
    [](const auto& test) { return test.param.what; });

TEST_F(ControlTest, HaltLastsUntilItIsCleared) {
    EXPECT_EQ(answer("02 03 00 00 81 00 00 00"), "1: 0, 0");
    EXPECT_EQ(answer("82 00 00 00 81 00 02 00"), "1: 0, 2: 01 00");
    EXPECT_EQ(answer("82 00 00 00 01 00 02 00"), "1: 0, 2: 00 00");
    EXPECT_THAT(ask(read(2, 63)), ElementsAre("2: -32, 0"));
    EXPECT_THAT(ask(write(3, packets::command({0x11}))), ElementsAre("3: 0, 2052"));
    EXPECT_EQ(answer("02 01 00 00 81 00 00 00"), "1: 0, 0");
    EXPECT_EQ(answer("82 00 00 00 81 00 02 00"), "1: 0, 2: 00 00");
    EXPECT_THAT(ask(read(4, 63)), ElementsAre("4: 0, 63: 33 41 37 00*60"));
}

TEST_F(ControlTest, SettingTheConfigurationOrTheInterfaceEndsAHalt) {
    for (const char* request : {"00 09 01 00 00 00 00 00", "01 0B 00 00 00 00 00 00"}) {
        answer("02 03 00 00 01 00 00 00");
        EXPECT_EQ(answer(request), "1: 0, 0");
        EXPECT_EQ(answer("82 00 00 00 01 00 02 00"), "1: 0, 2: 00 00");
    }
}

TEST_F(ControlTest, WithoutAConfigurationThereAreNoBulkEndpoints) {
    EXPECT_THAT(ask(read(2, 63)), ElementsAre());
    const Lines lines = ask(control(3, "00 09 00 00 00 00 00 00"));
    EXPECT_THAT(lines, ElementsAre("3: 0, 0", "2: -71, 0"));
    EXPECT_EQ(answer("80 08 00 00 00 00 01 00"), "1: 0, 1: 00");
    EXPECT_EQ(answer("81 00 00 00 00 00 02 00"), "1: " + Stall);
    EXPECT_EQ(answer("82 00 00 00 81 00 02 00"), "1: " + Stall);
    EXPECT_THAT(ask(write(4, packets::command({0x02, 9}))), ElementsAre("4: -71, 0"));
    EXPECT_EQ(device.controller().working()[0], 0);
    EXPECT_EQ(answer("00 09 01 00 00 00 00 00"), "1: 0, 0");
    EXPECT_THAT(ask(write(5, packets::command({0x02, 9}))), ElementsAre("5: 0, 2052"));
}

}  // namespace
