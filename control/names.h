#ifndef LUMADOT_CONTROL_NAMES_H
#define LUMADOT_CONTROL_NAMES_H

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace control {

/// What input modes or palette presets are called on the command line.
struct Name {
    std::uint8_t number;
    std::string_view text;
};

/// All of one kind: "input mode", "palette preset".
struct Names {
    std::string_view kind;
    std::vector<Name> labels;   ///< as the window shows them, by number
    std::vector<Name> aliases;  ///< what they also answer to
};

const Names& modeNames();
const Names& presetNames();

/// The number that is meant by a number, a name, or a part of one name only, without regard to
/// case. Throws a Failure that lists the candidates.
std::uint8_t lookUp(const Names& names, const std::string& text);

/// The label of `number`, empty when there is none.
std::string_view labelOf(const Names& names, std::uint8_t number);

/// "2 Stern S.A.M.", "200 (no name)".
std::string numberAndLabel(const Names& names, std::uint8_t number);

/// {"number": 2, "name": "Stern S.A.M."}, the name null when there is none.
nlohmann::ordered_json nameJson(const Names& names, std::uint8_t number);

}  // namespace control

#endif
