#ifndef SIMULATOR_BODY_PICTURE_ROUND_MASK_H
#define SIMULATOR_BODY_PICTURE_ROUND_MASK_H

#include <Evas.h>
#include <cstdint>
#include <vector>

/**
 * How much of each pixel of a square is inside the circle that fits into it, 0 to 255, row by row.
 *
 * One quadrant is sampled on a fine grid, the others are its mirror images: the disc is symmetric
 * in its quadrants and diagonals.
 *
 * @param side In pixels, greater than 0.
 */
std::vector<uint8_t> DiscCoverage(int side);

/**
 * An image, shown and owned by the canvas, that clips objects to a disc; see ResizeRoundMask().
 */
Evas_Object* AddRoundMask(Evas* canvas);

/** Resizes the image to a square of `side` pixels and the disc to fit. */
void ResizeRoundMask(Evas_Object* mask, int side);

#endif
