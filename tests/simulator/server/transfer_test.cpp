// The log's lines, and faults as they are written on the command line.

#include "simulator/server/transfer.h"

#include <gtest/gtest.h>

#include "tests/simulator/packets.h"

namespace {

using simulator::logLine;
using simulator::parseFault;
using simulator::TransferFault;
using What = TransferFault::What;

TEST(LogLine, CountsTheZerosAtTheEnd) {
    EXPECT_EQ(logLine({.endpoint = 0x01, .data = packets::command({0x10})}),
              R"({"ep":1,"len":2052,"data":"81c3e7ff10","zeros":2047})");
    EXPECT_EQ(logLine({.endpoint = 0x81, .data = {0, 0xAB, 0}}),
              R"({"ep":129,"len":3,"data":"00ab","zeros":1})");
    EXPECT_EQ(logLine({.endpoint = 0x81, .data = {}, .error = "stall"}),
              R"({"ep":129,"len":0,"data":"","zeros":0,"error":"stall"})");
}

TEST(Fault, IsReadFromItsThreeParts) {
    EXPECT_EQ(parseFault("out:1:stall"), (TransferFault{0x01, 1, What::Stall, 0}));
    EXPECT_EQ(parseFault("in:0:timeout"), (TransferFault{0x81, 0, What::Timeout, 0}));
    EXPECT_EQ(parseFault("in:12:short=512"), (TransferFault{0x81, 12, What::Short, 512}));
    EXPECT_EQ(parseFault("in:3:short=0"), (TransferFault{0x81, 3, What::Short, 0}));
    EXPECT_EQ(parseFault("out:2:unplug"), (TransferFault{0x01, 2, What::Unplug, 0}));
}

TEST(Fault, ThatCannotBeUnderstoodIsNone) {
    for (const char* text : {"",
                             ":",
                             "::",
                             "out",
                             "out:1",
                             "out:1:",
                             "out::stall",
                             "out:-1:stall",
                             "out:1x:stall",
                             "out:99999999999:stall",
                             "up:1:stall",
                             "Out:1:stall",
                             "out:1:Stall",
                             "out:1:stall ",
                             "out:1:short",
                             "out:1:short=",
                             "out:1:short=-1",
                             "out:1:short=x",
                             "out:1:stall:2",
                             "out:1:short=5000000000",
                             " out:1:stall",
                             "out:1: stall"}) {
        EXPECT_EQ(parseFault(text), std::nullopt) << text;
    }
}

TEST(FaultList, GivesTheOneAddedFirst) {
    simulator::FaultList faults;
    faults.add({0x81, 2, What::Stall, 0});
    faults.add({0x81, 0, What::Timeout, 0});
    EXPECT_EQ(faults.begin(0x01), std::nullopt);
    EXPECT_EQ(faults.begin(0x81)->what, What::Timeout);
    EXPECT_EQ(faults.begin(0x81)->what, What::Stall);
    EXPECT_EQ(faults.begin(0x81)->what, What::Timeout);
    faults.clear();
    EXPECT_EQ(faults.begin(0x81), std::nullopt);
}

}  // namespace
