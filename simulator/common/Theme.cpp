#include "common/Theme.h"

#include <Edje.h>
#include <filesystem>
#include <stdexcept>

namespace fs = std::filesystem;

namespace
{
std::string FindThemeFile()
{
    const fs::path executable = fs::read_symlink("/proc/self/exe");
    for (fs::path folder = executable.parent_path(); folder != folder.root_path();
         folder = folder.parent_path())
    {
        for (const char* place : {"share/qivo-watch/watch.edj", "theme/watch.edj"})
        {
            if (fs::exists(folder / place))
                return folder / place;
        }
    }
    throw std::runtime_error("no theme (watch.edj) above " + executable.string());
}
} // namespace

const std::string& ThemeFile()
{
    static const std::string sFile = FindThemeFile();
    return sFile;
}

Evas_Object* AddThemed(Evas* canvas, const char* group)
{
    Evas_Object* object = edje_object_add(canvas);
    if (!edje_object_file_set(object, ThemeFile().c_str(), group))
        throw std::runtime_error(ThemeFile() + " has no group " + group);
    evas_object_show(object);
    return object;
}
