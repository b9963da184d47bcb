#include "recording/damage.h"

namespace recording {

namespace {

/// "3 dots instead of 128".
std::string instead(const Damage& damage, const std::string& what) {
    std::string text = std::to_string(damage.found) + " " + what + (damage.found == 1 ? "" : "s");
    if (damage.wanted != 0) {
        text += " instead of " + std::to_string(damage.wanted);
    }
    return text;
}

}  // namespace

std::string reasonOf(const Damage& damage) {
    switch (damage.kind) {
        case Damage::Kind::NoTimeStamp:
            return "no time stamp where a frame should start";
        case Damage::Kind::RowLength:
            return "a row of " + instead(damage, "dot");
        case Damage::Kind::NotADigit:
            return "a dot that is no hexadecimal digit";
        case Damage::Kind::RowsMissing:
            return "a frame of " + instead(damage, "row");
        case Damage::Kind::RowsTooMany:
            return "a frame of more than " + std::to_string(damage.wanted) + " rows";
        case Damage::Kind::OtherSize:
            return "a frame of another size, with " + std::to_string(damage.found) +
                   " dots a row among frames with " + std::to_string(damage.wanted);
        case Damage::Kind::EmptyLineMissing:
            return "no empty line behind a frame";
        case Damage::Kind::SecondHeader:
            return "a header in the middle, where a second capture began";
        case Damage::Kind::FrameCut:
            return "a frame of " + instead(damage, "byte");
        case Damage::Kind::EndsInside:
            break;
    }
    return "the file ends inside a frame";
}

}  // namespace recording
