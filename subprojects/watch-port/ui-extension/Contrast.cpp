#include "ui-extension/Contrast.h"

#include <cmath>

namespace WatchPort
{

namespace
{

constexpr double kHigh = 15.0;
constexpr double kFlare = 0.05;
// Rounding to whole channels, and soft edges, take something from the contrast.
constexpr double kLight = (kHigh + 1) * kFlare - kFlare;
constexpr double kDark = (1 + kFlare) / (kHigh + 1) - kFlare;
// As far from black as from white.
constexpr double kMiddle = 0.179;

// The sRGB transfer function and the weights of WCAG 2.
double ToLight(int channel)
{
    const double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

int FromLight(double light)
{
    const double value =
        light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
    return static_cast<int>(std::lround(value * 255));
}

double Luminance(const Color& color)
{
    return 0.2126 * ToLight(color.r) + 0.7152 * ToLight(color.g) + 0.0722 * ToLight(color.b);
}

// Some of the way to white, or to black.
Color Mixed(const Color& color, double part, double end)
{
    auto mix = [&](int channel)
    { return FromLight(ToLight(channel) + part * (end - ToLight(channel))); };
    return {mix(color.r), mix(color.g), mix(color.b), color.a};
}

} // namespace

Color WithContrast(const Color& color, Contrast contrast)
{
    const double luminance = Luminance(color);
    if (contrast == Contrast::Normal)
        return color;
    if (luminance >= kMiddle)
        return luminance >= kLight ? color
                                   : Mixed(color, (kLight - luminance) / (1 - luminance), 1);
    return luminance <= kDark ? color : Mixed(color, 1 - kDark / luminance, 0);
}

} // namespace WatchPort
