#ifndef TESTS_PAGE_SETTING_H
#define TESTS_PAGE_SETTING_H

#include <gtest/gtest.h>

#include <string>
#include <tuple>

/// A screen's side in pixels, and the text size in percent.
using Setting = std::tuple<int, int>;

/// Every screen with every kind of line that a text size makes, and smaller letters in such a line.
inline auto Settings()
{
    return testing::Values(Setting(360, 100), Setting(390, 100), Setting(454, 100),
                           Setting(360, 130), Setting(390, 130), Setting(454, 130),
                           Setting(360, 160), Setting(390, 160), Setting(454, 160),
                           Setting(360, 200), Setting(390, 200), Setting(454, 200),
                           Setting(360, 80));
}

inline std::string NameOfSetting(const testing::TestParamInfo<Setting>& test)
{
    const auto [side, percent] = test.param;
    return std::to_string(side) + "WithTextOf" + std::to_string(percent);
}

#endif
