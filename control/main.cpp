#include <iostream>
#include <span>

#include "control/run.h"

int main(int argc, char** argv) {
    const std::span<const char* const> all(argv, static_cast<std::size_t>(argc));
    return control::run(all.subspan(all.empty() ? 0 : 1), std::cout, std::cerr);
}
