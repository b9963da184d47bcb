#include <iostream>
#include <span>

#include "control/run.h"
#include "platform/start.h"

int main(int argc, char** argv) {
    start::CommandLine line(argc, argv);
    const std::span<const char* const> all(line.values(), static_cast<std::size_t>(line.count()));
    return control::run(all.subspan(all.empty() ? 0 : 1), std::cout, std::cerr);
}
