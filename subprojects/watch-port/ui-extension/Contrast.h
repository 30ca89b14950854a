#ifndef WATCH_PORT_UI_EXTENSION_CONTRAST_H
#define WATCH_PORT_UI_EXTENSION_CONTRAST_H

namespace WatchPort
{

/** A colour of 0 to 255 a channel, not premultiplied. */
struct Color
{
    int r;
    int g;
    int b;
    int a;
};

enum class Contrast
{
    Normal,
    /** At least 15:1, as WCAG 2 counts it: light colours against black, dark ones against white. */
    High,
};

/** A colour with a contrast. Its hue and its opacity stay. */
Color WithContrast(const Color& color, Contrast contrast);

} // namespace WatchPort

#endif
