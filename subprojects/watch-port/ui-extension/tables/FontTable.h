#ifndef WATCH_PORT_UI_EXTENSION_FONT_TABLE_H
#define WATCH_PORT_UI_EXTENSION_FONT_TABLE_H

#include "ui-extension/TextSize.h"

#include <map>
#include <string>

namespace WatchPort
{

/** The fonts of a table by their ids, which are Edje text classes. */
class FontTable
{
public:
    /** Reads a table file; false when it is not a font table at all. */
    bool Load(const char* path);
    /** Sets the process's text class of every id, at a text size. */
    void Apply(const TextSize& size) const;
    /** Deletes the process's text class of every id; the toolkit's own have the text size again. */
    void TakeOff(const TextSize& size) const;

private:
    struct Font
    {
        std::string description;
        int size;
    };

    std::map<std::string, Font> mFonts;
};

} // namespace WatchPort

#endif
