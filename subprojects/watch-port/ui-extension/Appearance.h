#ifndef WATCH_PORT_UI_EXTENSION_APPEARANCE_H
#define WATCH_PORT_UI_EXTENSION_APPEARANCE_H

/** How the user wants all applications to look. To be called while the toolkit is up. */
namespace WatchPort
{

/**
 * The size class that tells a theme the text size: its least width is the size in percent, its
 * least height the height of a line of text, of a screen that is 360 high. A part without "scale"
 * gets just these numbers. It is not set at the usual size: 100 and 45 are the theme's to give.
 */
constexpr const char* kTextSizeClass = "watch/text-size";

/**
 * Makes all text larger or smaller, what is shown now and what will be: the fonts of the font
 * table, the toolkit's own texts that have a text class, and each theme that follows
 * kTextSizeClass. Pictures keep their sizes.
 *
 * @param factor 1.0 is the usual size; from 0.8 to 2.0, or the nearest of these
 */
void SetTextSize(double factor);

/**
 * Gives all colours of the colour table more contrast, what is shown now and what will be: a light
 * colour gets at least 15:1 against black, a dark one at least 15:1 against white. The hue and
 * what shines through stay.
 */
void SetHighContrast(bool isHigh);

/**
 * The colour class that tells a theme whether to let anything move by itself: it is set, to white,
 * while motion is reduced. A script reads it with get_color_class(), which finds zeros else.
 */
constexpr const char* kStillClass = "watch/still";

/**
 * Shows the end of each motion at once, of what moves now and will, or the whole motion again:
 * scrolling to a place, and each transition whose theme says USE_DURATION_FACTOR. That is at its
 * end in the next frame, and its end is told as usual. What a finger throws still slows down.
 */
void SetReducedMotion(bool isReduced);

} // namespace WatchPort

#endif
