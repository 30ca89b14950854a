#ifndef TESTS_PAGE_SETTING_H
#define TESTS_PAGE_SETTING_H

#include <gtest/gtest.h>

#include <string>
#include <tuple>

/// A screen's side in pixels, and the text size in percent.
using Setting = std::tuple<int, int>;

/// Every screen at the usual text size, and every kind of line that a text size makes.
inline auto Settings()
{
    return testing::Values(Setting(360, 100), Setting(390, 100), Setting(454, 100),
                           Setting(360, 200), Setting(360, 80), Setting(360, 130),
                           Setting(390, 130), Setting(454, 160));
}

inline std::string NameOfSetting(const testing::TestParamInfo<Setting>& test)
{
    const auto [side, percent] = test.param;
    return std::to_string(side) + "WithTextOf" + std::to_string(percent);
}

#endif
