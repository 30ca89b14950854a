#include "page/Picture.h"

#include <cmath>
#include <fstream>

namespace
{

// The sRGB transfer function and the weights of WCAG 2.
double Linear(uint32_t channel)
{
    double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

} // namespace

Picture::Picture(const uint32_t* pixels, int side)
    : mSide(side), mPixels(pixels, pixels + static_cast<size_t>(side) * side)
{
}

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
