#ifndef TESTS_PAGE_STAGE_VISION_H
#define TESTS_PAGE_STAGE_VISION_H

#include "page/stage/Picture.h"

#include <vector>

/// An eye that sees no colours, or not all of them.
struct Vision
{
    const char* name;
    /// What of each linear channel (red, green, blue) becomes red, green and blue.
    double mix[3][3];

    /// All of them: the usual eye, one that sees greys only, and those without cones for long
    /// (red) or for middle (green) waves, the commonest kinds of colour blindness.
    static const std::vector<Vision>& All();

    /// A picture as this eye sees it.
    Picture See(const Picture& picture) const;
};

#endif
