#ifndef SIMULATOR_BODY_ROUND_MASK_H
#define SIMULATOR_BODY_ROUND_MASK_H

#include <Evas.h>
#include <cstdint>
#include <vector>

/**
 * How much of each pixel of a square lies in the circle that fits into it, 0 to 255, row by row.
 *
 * The values of one quadrant are counted in a fine grid, the others are its mirror images: the disc
 * is the same in its four quadrants, and beside its diagonals.
 *
 * @param side In pixels, greater than 0.
 */
std::vector<uint8_t> DiscCoverage(int side);

/**
 * An image, shown and owned by the canvas, that lets a disc through when it clips an object; see
 * ResizeRoundMask().
 */
Evas_Object* AddRoundMask(Evas* canvas);

/** Makes the image `side` pixels large in each direction, and the disc as large as fits into it. */
void ResizeRoundMask(Evas_Object* mask, int side);

#endif
