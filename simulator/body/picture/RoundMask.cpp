#include "body/picture/RoundMask.h"

#include <algorithm>

namespace
{
constexpr int64_t kGrid = 16;

// In units of half a grid cell from the circle's centre, so all numbers are integers. `x` and `y`
// are the pixel's corner nearest to the centre.
int64_t CountCovered(int64_t x, int64_t y, int64_t radius)
{
    constexpr int64_t kPixel = 2 * kGrid;
    if ((x + kPixel) * (x + kPixel) + (y + kPixel) * (y + kPixel) <= radius * radius)
        return kGrid * kGrid;
    if (x * x + y * y >= radius * radius)
        return 0;
    int64_t covered = 0;
    for (int64_t row = 0; row < kGrid; ++row)
    {
        for (int64_t column = 0; column < kGrid; ++column)
        {
            const int64_t cellX = x + 2 * column + 1;
            const int64_t cellY = y + 2 * row + 1;
            covered += cellX * cellX + cellY * cellY <= radius * radius ? 1 : 0;
        }
    }
    return covered;
}

uint8_t CoverageAt(int x, int y, int side)
{
    constexpr int64_t kPixel = 2 * kGrid;
    // A pixel left of or above the centre equals its mirror image; the middle one of an odd side is
    // wholly inside, whichever corner is taken.
    const int64_t radius = kGrid * side;
    const int64_t fromX = kPixel * std::max(x, side - 1 - x) - radius;
    const int64_t fromY = kPixel * std::max(y, side - 1 - y) - radius;
    const int64_t covered = CountCovered(fromX, fromY, radius);
    return static_cast<uint8_t>(covered * 255 / (kGrid * kGrid));
}
} // namespace

std::vector<uint8_t> DiscCoverage(int side)
{
    std::vector<uint8_t> coverage(static_cast<size_t>(side) * side);
    for (int y = 0; y < side; ++y)
    {
        for (int x = 0; x < side; ++x)
            coverage[static_cast<size_t>(y) * side + x] = CoverageAt(x, y, side);
    }
    return coverage;
}

Evas_Object* AddRoundMask(Evas* canvas)
{
    Evas_Object* mask = evas_object_image_filled_add(canvas);
    evas_object_image_alpha_set(mask, EINA_TRUE);
    evas_object_show(mask);
    return mask;
}

void ResizeRoundMask(Evas_Object* mask, int side)
{
    const std::vector<uint8_t> coverage = DiscCoverage(side);
    std::vector<uint32_t> pixels(coverage.size());
    std::transform(coverage.begin(), coverage.end(), pixels.begin(),
                   [](uint8_t alpha) { return alpha * 0x01010101U; });
    evas_object_image_size_set(mask, side, side);
    evas_object_image_data_copy_set(mask, pixels.data());
    evas_object_image_data_update_add(mask, 0, 0, side, side);
    evas_object_resize(mask, side, side);
}
