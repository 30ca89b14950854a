#ifndef WATCH_PORT_UI_EXTENSION_COLOR_TABLE_H
#define WATCH_PORT_UI_EXTENSION_COLOR_TABLE_H

#include "ui-extension/Contrast.h"

#include <map>
#include <string>

namespace WatchPort
{

/** The colours of a table by their ids, which are both Edje colour classes and colour codes. */
class ColorTable
{
public:
    /** Reads a table file; false when it is not a colour table at all. */
    bool Load(const char* path);
    /** Sets the process's colour class of every id, with a contrast. */
    void Apply(Contrast contrast) const;
    /** Deletes the process's colour class of every id. */
    void TakeOff(Contrast) const;
    /** The colour of an id, or null. It belongs to the table. */
    const Color* Find(const std::string& id) const;

private:
    std::map<std::string, Color> mColors;
};

} // namespace WatchPort

#endif
