#ifndef LUMADOT_RECORDING_DAMAGE_H
#define LUMADOT_RECORDING_DAMAGE_H

#include <cstdint>
#include <string>

namespace recording {

/// A place of a file that is not as a capture writes it.
struct Damage {
    enum class Kind : std::uint8_t {
        NoTimeStamp,       ///< something else where a frame should start
        RowLength,         ///< a row of `found` dots instead of `wanted` (0: unknown)
        NotADigit,         ///< a dot that is no hexadecimal digit
        RowsMissing,       ///< a frame of `found` rows instead of `wanted` (0: unknown)
        RowsTooMany,       ///< a frame of more than `wanted` rows
        OtherSize,         ///< a frame of `found` dots a row among those of `wanted`
        EmptyLineMissing,  ///< no empty line behind a frame; the frame is read
        SecondHeader,      ///< a raw dump's header in the middle; nothing is lost
        FrameCut,          ///< a raw frame of `found` bytes instead of `wanted`
        EndsInside,        ///< the file ends inside a frame
    };

    std::uint64_t offset = 0;  ///< of its first byte in the file
    std::uint32_t found = 0;
    std::uint32_t wanted = 0;
    Kind kind = Kind::NoTimeStamp;

    bool operator==(const Damage&) const = default;
};

/// What is wrong there, for people.
std::string reasonOf(const Damage& damage);

}  // namespace recording

#endif
