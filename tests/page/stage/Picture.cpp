#include "page/stage/Picture.h"

#include <cmath>
#include <fstream>

Picture::Picture(const uint32_t* pixels, int side)
    : mSide(side), mPixels(pixels, pixels + static_cast<size_t>(side) * side)
{
}

double Picture::Linear(uint32_t channel)
{
    const double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

uint32_t Picture::Channel(double light)
{
    const double value =
        light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
    return static_cast<uint32_t>(std::lround(value * 255));
}

// The weights of WCAG 2.
double Picture::LuminanceAt(int x, int y) const
{
    uint32_t pixel = At(x, y);
    return 0.2126 * Linear(pixel >> 16) + 0.7152 * Linear(pixel >> 8 & 0xff) +
           0.0722 * Linear(pixel & 0xff);
}

bool Picture::Save(const std::string& file) const
{
    std::ofstream stream(file, std::ios::binary);
    stream << "P6\n" << mSide << " " << mSide << "\n255\n";
    for (uint32_t pixel : mPixels)
    {
        for (int shift : {16, 8, 0})
            stream.put(static_cast<char>(pixel >> shift & 0xff));
    }
    return static_cast<bool>(stream.flush());
}
