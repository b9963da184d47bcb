#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <optional>

#include "control/commands/commands.h"
#include "control/device_text.h"
#include "control/findings.h"
#include "control/interrupt.h"
#include "control/link.h"
#include "control/text.h"

namespace control {

namespace {

/// What can be told of a controller; what cannot be read stays empty.
struct Row {
    DeviceInfo place;
    bool access = true;
    bool held = false;
    std::optional<Holder> holder = {};
    std::optional<std::string> firmware = {};
    std::optional<std::string> uniqueId = {};
};

/// Reads what an open and claimed controller tells; what it does not tell stays empty.
void ask(Channel& link, Row& row) {
    try {
        Settings settings = readSettings(link);
        if (settings.isWhole) {
            row.firmware = settings.firmware;
        }
        row.uniqueId = readUniqueId(link);
    } catch (const Interrupted&) {
        throw;
    } catch (const Failure&) {
        return;  // A controller that does not answer is on the bus all the same.
    }
}

void lookAt(const Bus::Found& found, unsigned int timeout, Output& output, Row& row) {
    OpenDevice device(found);
    if (const int error = device.open(); error < 0) {
        row.access = error != LIBUSB_ERROR_ACCESS;
        return;
    }
    connection::Product product = device.readProduct();
    row.place.variant = product.variant;
    row.place.product = std::move(product.name);
    if (const int error = device.claim(); error < 0) {
        row.held = error == LIBUSB_ERROR_BUSY;
        row.holder = row.held ? holderOf(row.place.bus, row.place.address) : std::nullopt;
        return;
    }
    Link link(std::move(device), row.place, timeout, output);
    ask(link, row);
}

Json orNull(const std::optional<std::string>& text) { return text ? Json(*text) : Json(); }

Json holderJson(const Row& row) {
    if (!row.held) {
        return {};
    }
    return {{"program", row.holder ? Json(row.holder->program) : Json()},
            {"pid", row.holder ? Json(row.holder->pid) : Json()}};
}

Json rowJson(const Row& row, bool first) {
    Json json = deviceJson(row.place);
    json["firmware"] = orNull(row.firmware);
    json["uniqueId"] = orNull(row.uniqueId);
    json["access"] = row.access;
    json["holder"] = holderJson(row);
    json["takenByWindow"] = first;
    return json;
}

using Cells = std::array<std::string, 7>;

std::string holderText(const Row& row) {
    if (!row.held) {
        return "-";
    }
    return row.holder ? row.holder->program + " (" + std::to_string(row.holder->pid) + ")"
                      : "another program";
}

Cells cellsOf(const Row& row, bool first) {
    const DeviceInfo& place = row.place;
    return {std::string(first ? "* " : "  ") + placeText(place),
            variantName(place.variant),
            place.product.empty() ? "-" : printable(place.product),
            row.firmware ? printable(*row.firmware) : "-",
            row.uniqueId ? printable(*row.uniqueId) : "-",
            row.access ? "yes" : "no",
            holderText(row)};
}

/// In columns; nothing behind the last.
std::vector<std::string> table(const std::vector<Cells>& rows) {
    std::array<std::size_t, std::tuple_size_v<Cells>> widths{};
    for (const Cells& cells : rows) {
        for (std::size_t i = 0; i < cells.size(); ++i) {
            widths[i] = std::max(widths[i], cells[i].size());
        }
    }
    std::vector<std::string> lines;
    for (const Cells& cells : rows) {
        std::string line;
        for (std::size_t i = 0; i + 1 < cells.size(); ++i) {
            line += cells[i] + std::string(widths[i] - cells[i].size() + 2, ' ');
        }
        lines.push_back(line + cells.back());
    }
    return lines;
}

void show(const std::vector<Row>& rows, Session& session) {
    std::vector<Cells> lines = {
        {"  PLACE", "VARIANT", "PRODUCT", "FIRMWARE", "UNIQUE ID", "ACCESS", "HELD BY"}};
    for (const Row& row : rows) {
        const bool first = &row == &rows.front();
        session.document()["controllers"].push_back(rowJson(row, first));
        lines.push_back(cellsOf(row, first));
    }
    for (const std::string& line : table(lines)) {
        session.output().result(line);
    }
    session.output().result("* is the one that the window takes.");
}

ExitCode list(Session& session) {
    if (session.options().dryRun) {
        readSettings(*session.connect());
    }
    session.document()["controllers"] = Json::array();
    const Bus bus;
    if (bus.controllers().empty()) {
        throw failureOf(findings::nothingOnTheBus());
    }
    std::vector<Row> rows;
    for (const Bus::Found& found : bus.controllers()) {
        interrupt::check();
        Row row{.place = placeOf(found.device)};
        lookAt(found, session.options().timeout, session.output(), row);
        rows.push_back(std::move(row));
    }
    show(rows, session);
    return ExitCode::Done;
}

}  // namespace

void defineList(CLI::App& app, Action& chosen) {
    app.callback([&chosen] { chosen = list; });
}

}  // namespace control
