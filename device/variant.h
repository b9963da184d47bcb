#ifndef LUMADOT_DEVICE_VARIANT_H
#define LUMADOT_DEVICE_VARIANT_H

#include <string_view>

/// Which controller was found. A negative value is the error of the product string's read; the
/// controller is then open all the same.
namespace variant {

inline constexpr int None = 0;
inline constexpr int UnknownName = 1;
inline constexpr int Standard = 2;  ///< product string "LUMADOT", 128 x 32 dots
inline constexpr int Xl = 3;        ///< product string "LUMADOT XL", 192 x 64 dots

/// By the product string, to the letter.
constexpr int named(std::string_view product) {
    if (product == "LUMADOT") {
        return Standard;
    }
    return product == "LUMADOT XL" ? Xl : UnknownName;
}

}  // namespace variant

#endif
