#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "control/commands/commands.h"
#include "control/device_text.h"
#include "control/findings.h"
#include "control/link.h"

namespace control {

namespace {

/// What came of looking, and the USB library's error behind it.
struct Diagnosis {
    Finding finding;
    int usbError = 0;
};

Diagnosis askForSettings(Link& link) {
    try {
        readSettings(link);
    } catch (const Interrupted&) {
        throw;
    } catch (const Failure& failure) {
        if (failure.code != ExitCode::NoAnswer) {
            throw;
        }
        const bool hasName = failure.usbError != 0;
        return {
            findings::noAnswer(hasName ? usbErrorName(failure.usbError) : "its reply is too short"),
            failure.usbError};
    }
    return {findings::works()};
}

/// The controller that is meant, or the first one.
const Bus::Found& chosenOf(const Bus& bus, const std::string& choice) {
    if (choice.empty()) {
        return bus.controllers().front();
    }
    if (!isPlace(choice)) {
        throw Failure(ExitCode::Usage, "check takes a place for --device, as in 1-2.",
                      "Run lumadotctl list: it shows the places.");
    }
    return atPlace(bus, choice);
}

Diagnosis diagnose(Session& session) {
    const Bus bus;
    if (bus.controllers().empty()) {
        return {findings::nothingOnTheBus()};
    }
    const Bus::Found& found = chosenOf(bus, session.options().device);
    OpenDevice device(found);
    DeviceInfo info = placeOf(found.device);
    session.document()["device"] = deviceJson(info);
    if (const int error = device.open(); error < 0) {
        const auto finding = permissionFinding(error);
        return finding ? Diagnosis{*finding, error} : throw usbFailure(Step::Open, error);
    }
    connection::Product product = device.readProduct();
    info.variant = product.variant;
    info.product = std::move(product.name);
    session.document()["device"] = deviceJson(info);
    if (const int error = device.claim(); error < 0) {
        const auto finding = holdFinding(device, info, error);
        return finding ? Diagnosis{*finding, error} : throw usbFailure(Step::Claim, error);
    }
    if (info.product.empty()) {
        return {findings::nameUnreadable(info.variant), info.variant};
    }
    Link link(std::move(device), info, session.options().timeout, session.output());
    return askForSettings(link);
}

ExitCode check(Session& session) {
    if (session.options().dryRun) {
        readSettings(*session.connect());
    }
    session.document()["check"] = Json();
    session.document()["device"] = Json();
    const auto [finding, usbError] = diagnose(session);
    session.document()["check"] = {
        {"finding", finding.name}, {"message", finding.message}, {"hint", finding.hint}};
    session.output().result(finding.message + " " + finding.hint);
    if (finding.code != ExitCode::Done) {
        session.output().reportInDocument(failureOf(finding, usbError));
    }
    return finding.code;
}

}  // namespace

void defineCheck(CLI::App& app, Action& chosen) {
    app.callback([&chosen] { chosen = check; });
}

}  // namespace control
