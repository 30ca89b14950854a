#ifndef TESTS_PAGE_STAGE_INK_H
#define TESTS_PAGE_STAGE_INK_H

#include "page/stage/Page.h"
#include "page/stage/Picture.h"

#include <optional>

/// What is drawn and not black.
namespace Ink
{

/// Tells whether a pixel is more than the faintest edge of a letter.
bool IsAt(const Picture& picture, int x, int y);

/// Tells whether a row of pixels has ink anywhere.
bool IsInRow(const Picture& picture, int y);

/// The smallest box around the ink in some rows; nothing when they are empty.
std::optional<Box> Within(const Picture& picture, int top, int bottom);

/// How far a pixel reaches from the screen's centre, of the screen's radius; on the screen or not.
double Distance(const Picture& picture, int x, int y);

/// How far from the screen's centre the ink in some rows reaches, of the screen's radius.
double Reach(const Picture& picture, int top, int bottom);

/// The contrast of the brightest ink in some rows to black, from 1 to 21 as in WCAG 2.
double Contrast(const Picture& picture, int top, int bottom);

} // namespace Ink

#endif
