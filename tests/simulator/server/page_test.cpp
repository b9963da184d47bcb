// The example of docs/simulator.md.

#include <gmock/gmock.h>

#include <fstream>

#include "tests/simulator/server/client.h"

namespace {

/// The lines of the block that starts "```json log".
std::vector<std::string> example() {
    std::vector<std::string> lines;
    std::ifstream page(LUMADOT_DOCS "/simulator.md");
    bool inside = false;
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with("```")) {
            inside = line == "```json log";
        } else if (inside) {
            lines.push_back(line);
        }
    }
    return lines;
}

TEST_F(ClientTest, LogIsAsThePageShowsIt) {
    std::vector<std::string> lines;
    device.onTransfer(
        [&](const simulator::Transfer& transfer) { lines.push_back(logLine(transfer)); });
    device.inject(*simulator::parseFault("out:2:stall"));
    ask(write(1, packets::command({0x11})));
    ask(read(2, 63));
    ask(write(3, packets::command({0x02, 9})));
    ask(read(4, 63));
    ask(unlink(5, 4));
    EXPECT_EQ(lines, example());
    EXPECT_EQ(lines.size(), 4U);
}

}  // namespace
