#include "page/stage/Ink.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr unsigned kFaintest = 40;

template <typename Visitor>
void ForEach(const Picture& picture, int top, int bottom, const Visitor& visit)
{
    for (int y = std::max(top, 0); y < std::min(bottom, picture.Side()); ++y)
    {
        for (int x = 0; x < picture.Side(); ++x)
        {
            if (Ink::IsAt(picture, x, y))
                visit(x, y);
        }
    }
}

} // namespace

bool Ink::IsAt(const Picture& picture, int x, int y)
{
    uint32_t pixel = picture.At(x, y);
    return std::max({pixel >> 16, pixel >> 8 & 0xff, pixel & 0xff}) > kFaintest;
}

bool Ink::IsInRow(const Picture& picture, int y)
{
    return Within(picture, y, y + 1).has_value();
}

std::optional<Box> Ink::Within(const Picture& picture, int top, int bottom)
{
    std::optional<Box> box;
    ForEach(picture, top, bottom,
            [&](int x, int y)
            {
                if (!box)
                    box = Box{x, y, x, y};
                *box = {std::min(box->left, x), box->top, std::max(box->right, x + 1), y + 1};
            });
    return box;
}

double Ink::Distance(const Picture& picture, int x, int y)
{
    // To the far corner of the pixel.
    const double radius = picture.Side() / 2.0;
    const double across = std::abs(x + 0.5 - radius) + 0.5;
    const double down = std::abs(y + 0.5 - radius) + 0.5;
    return std::sqrt(across * across + down * down) / radius;
}

double Ink::Reach(const Picture& picture, int top, int bottom)
{
    double reach = 0;
    ForEach(picture, top, bottom,
            [&](int x, int y) { reach = std::max(reach, Distance(picture, x, y)); });
    return reach;
}

double Ink::Contrast(const Picture& picture, int top, int bottom)
{
    constexpr double kFlare = 0.05;
    double brightest = 0;
    ForEach(picture, top, bottom,
            [&](int x, int y) { brightest = std::max(brightest, picture.LuminanceAt(x, y)); });
    return (brightest + kFlare) / kFlare;
}
