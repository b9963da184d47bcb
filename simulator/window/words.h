#ifndef LUMADOT_SIMULATOR_WINDOW_WORDS_H
#define LUMADOT_SIMULATOR_WINDOW_WORDS_H

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "simulator/controller.h"
#include "simulator/server/transfer.h"

namespace simulator {

/// A row of a table.
using Row = std::vector<std::string>;

/// The settings: what each is called, its value in use, and the one that survives a restart.
std::vector<Row> settingsInWords(const Controller& controller);

/// The files received, by name: name and size.
std::vector<Row> filesInWords(const Controller& controller);

/// What the board was told by a transfer; nothing for replies of the board, unless they failed.
std::optional<std::string> inWords(const Transfer& transfer);

/// The last things that the board was told.
class CommandList {
public:
    static constexpr std::size_t Most = 100;

    void add(const Transfer& transfer);
    /// The newest first: how often it came in a row, and what it was.
    std::vector<Row> rows() const;

private:
    struct Entry {
        std::string text;
        unsigned count;
    };
    std::deque<Entry> entries_;
};

}  // namespace simulator

#endif
