#include "device/input_mode.h"

#include <algorithm>
#include <array>

namespace {

using enum ShadeSet;
using enum DotRule::Sum;

constexpr DotRule Blank{Count, 0, "0"};
constexpr DotRule FourShades{Weighted, 2, "0123"};
constexpr DotRule SixteenShades{Weighted, 4, "0123456789abcdef"};
constexpr DotRule CountOfThree{Count, 3, "0123"};

// Kept for compatibility: Spooky and HomePin ask for no planes and still decode four.
// clang-format off
constexpr std::array Modes = std::to_array<InputModeInfo>({
    // number  label                  shades   planes raw    dots
    {  0, "USB port",                 Sixteen,  0,    false, Blank},
    {  1, "Bally/Williams",           Four,     3,    true,  CountOfThree},
    {  2, "Stern S.A.M.",             Sixteen,  4,    false, SixteenShades},
    {  3, "Stern Whitestar",          Four,     2,    false, FourShades},
    {  4, "Stern Spike",              Sixteen,  4,    false, SixteenShades},
    {  5, "Data East / Sega",         Four,     2,    false, FourShades},
    {  6, "Premier Gottlieb V1",      Five,    12,    true,  {Count, 12, "033777bbbbbbf"}},
    {  7, "Premier Gottlieb V2",      Four,     6,    true,  {Count,  6, "0122223"}},
    {  8, "Premier Gottlieb V3",      Four,     8,    true,  {Count,  8, "012222223"}},
    {  9, "Capcom",                   Four,     4,    true,  {Count,  4, "01233"}},
    { 10, "Alvin G",                  Five,     4,    true,  {Count,  4, "01234"}},
    { 11, "Spooky",                   Sixteen,  0,    false, SixteenShades},
    { 12, "Data East 128x16",         Four,     2,    false, FourShades},
    { 13, "Inder / SPinball",         Four,     3,    true,  CountOfThree},
    { 14, "Sleic / Petaco",           Four,     2,    false, FourShades},
    { 15, "HomePin",                  Sixteen,  0,    false, SixteenShades},
    {239, "",                         Sixteen,  4,    false, Blank},
});
// clang-format on

constexpr InputModeInfo Unknown{255, "", Sixteen, 0, false, Blank};

}  // namespace

std::span<const InputModeInfo> inputModes() { return Modes; }

const InputModeInfo& inputMode(std::uint8_t number) {
    const auto* const found = std::ranges::find(Modes, number, &InputModeInfo::number);
    return found == Modes.end() ? Unknown : *found;
}
