#include "page/stage/Vision.h"

#include <algorithm>
#include <cmath>

// The matrices for eyes without a kind of cones are those of Machado, Oliveira and Fernandes, 2009,
// at severity 1: they come from how the cones' answers are wired, hold for linear channels and keep
// white and greys as they are.
const std::vector<Vision>& Vision::All()
{
    static const std::vector<Vision> sAll = {
        {"usual", {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
        {"grey", {{0.2126, 0.7152, 0.0722}, {0.2126, 0.7152, 0.0722}, {0.2126, 0.7152, 0.0722}}},
        {"protan",
         {{0.152286, 1.052583, -0.204868},
          {0.114503, 0.786281, 0.099216},
          {-0.003882, -0.048116, 1.051998}}},
        {"deutan",
         {{0.367322, 0.860646, -0.227968},
          {0.280085, 0.672501, 0.047413},
          {-0.011820, 0.042940, 0.968881}}}};
    return sAll;
}

Picture Vision::See(const Picture& picture) const
{
    std::vector<uint32_t> pixels;
    for (int y = 0; y < picture.Side(); ++y)
    {
        for (int x = 0; x < picture.Side(); ++x)
        {
            const uint32_t pixel = picture.At(x, y);
            const double light[3] = {Picture::Linear(pixel >> 16),
                                     Picture::Linear(pixel >> 8 & 0xff),
                                     Picture::Linear(pixel & 0xff)};
            uint32_t seen = 0;
            for (const auto& row : mix)
            {
                const double sum = row[0] * light[0] + row[1] * light[1] + row[2] * light[2];
                seen = seen << 8 | Picture::Channel(std::clamp(sum, 0.0, 1.0));
            }
            pixels.push_back(seen);
        }
    }
    return Picture(pixels.data(), picture.Side());
}
