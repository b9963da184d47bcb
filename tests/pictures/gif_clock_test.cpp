#include "pictures/gif_clock.h"

#include <gmock/gmock.h>

#include <numeric>
#include <string>
#include <vector>

namespace {

using pictures::GifClock;

struct Case {
    std::string name;
    std::vector<std::uint32_t> timesMs;  ///< that the frames stay
    std::vector<std::uint32_t> delays;   ///< hundredths of a second, 0: left out
};

class Delays : public testing::TestWithParam<Case> {};

TEST_P(Delays, FollowTheRecording) {
    const auto& times = GetParam().timesMs;
    // The last frame's time is not part of the span.
    const std::uint64_t span =
        std::accumulate(times.begin(), times.end() - 1, std::uint64_t{0},
                        [](auto sum, auto each) { return sum + (each < 0x80000000 ? each : 0); });
    GifClock clock(times.size(), span);
    std::vector<std::uint32_t> delays;
    delays.reserve(times.size());
    for (const std::uint32_t time : times) {
        delays.push_back(clock.next(time));
    }
    EXPECT_EQ(delays, GetParam().delays);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Of, Delays, testing::Values(
    Case{"ASingleFrame",           {1000},                             {100}},
    Case{"Tenths",                 {100, 100, 100},                    {10, 10, 10}},
    Case{"AThirtiethOfASecond",    {33, 33, 33, 33, 33, 33, 33, 33, 33, 33},
                                                                       {3, 4, 3, 3, 4, 3, 3, 3, 4, 3}},
    Case{"RoundedUpAndMadeUpFor",  {25, 25, 25, 25},                   {3, 2, 3, 2}},
    Case{"ABurst",                 {100, 5, 5, 5, 100, 100},           {10, 2, 2, 2, 6, 10}},
    Case{"SixtyASecond",           {16, 16, 16, 16, 16, 16, 16, 16, 16, 16},
                                                                       {2, 2, 2, 2, 0, 2, 2, 2, 2, 0}},
    Case{"AHundredASecond",        {10, 10, 10, 10, 10, 10},           {2, 0, 2, 0, 2, 0}},
    Case{"FasterShowsEveryFrame",  {1, 1, 1, 1, 1},                    {2, 2, 2, 2, 2}},
    Case{"NoTimeAtAll",            {0, 0, 0},                          {2, 2, 2}},
    Case{"Backwards",              {100, 0xFFFFFFF0, 0x80000000, 100}, {10, 2, 2, 10}},
    Case{"ALongPause",             {655350, 655355, 1000000, 100},     {65535, 65535, 65535, 10}},
    Case{"TheLongestStep",         {0x7FFFFFFF, 40},                   {65535, 4}}),
    [](const auto& row) { return row.param.name; });
// clang-format on

TEST(TheClock, KeepsTheTimeOfALongRecording) {
    for (const std::uint32_t step : {10U, 11U, 13U, 16U, 17U, 19U, 20U, 21U, 33U, 40U, 77U}) {
        constexpr std::uint32_t Frames = 10000;
        GifClock clock(Frames, std::uint64_t{step} * (Frames - 1));
        std::int64_t shown = 0;
        for (std::int64_t frame = 1; frame <= Frames; ++frame) {
            shown += std::int64_t{10} * clock.next(step);
            ASSERT_NEAR(static_cast<double>(shown), static_cast<double>(frame * step), 25)
                << step << " ms";
        }
    }
}

}  // namespace
