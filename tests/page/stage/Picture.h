#ifndef TESTS_PAGE_STAGE_PICTURE_H
#define TESTS_PAGE_STAGE_PICTURE_H

#include <cstdint>
#include <string>
#include <vector>

/// What a square screen showed at one moment.
class Picture
{
public:
    Picture(const uint32_t* pixels, int side);

    int Side() const { return mSide; }
    /// 0xRRGGBB
    uint32_t At(int x, int y) const { return mPixels[y * mSide + x] & 0xffffff; }
    /// The relative luminance of a pixel, from 0 (black) to 1 (white), as in WCAG 2.
    double LuminanceAt(int x, int y) const;

    /// The light of a channel of 0 to 255, from 0 to 1, and back, as in sRGB.
    static double Linear(uint32_t channel);
    static uint32_t Channel(double light);

    /// Writes a binary PPM file; false when it cannot.
    bool Save(const std::string& file) const;

    bool operator==(const Picture& other) const { return mPixels == other.mPixels; }
    bool operator!=(const Picture& other) const { return mPixels != other.mPixels; }

private:
    int mSide;
    std::vector<uint32_t> mPixels;
};

#endif
