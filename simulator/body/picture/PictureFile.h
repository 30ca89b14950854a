#ifndef SIMULATOR_BODY_PICTURE_PICTURE_FILE_H
#define SIMULATOR_BODY_PICTURE_PICTURE_FILE_H

#include "body/screen/NestedScreen.h"
#include "common/WatchState.h"

#include <Evas.h>
#include <string>

/**
 * Saves the whole watch as a PNG picture at zoom 1, transparent around the watch. It is drawn off
 * screen from the state, without motion.
 *
 * Throws std::runtime_error with one line when the file's name is not absolute or does not end in
 * ".png", or the file cannot be written.
 */
void SavePicture(const std::string& file, const WatchState& state, const NestedScreen& screen);

/** The same, `side` pixels large, as an image object that is hidden and owned by the canvas. */
Evas_Object* AddPicture(Evas* canvas, int side, const WatchState& state,
                        const NestedScreen& screen);

#endif
