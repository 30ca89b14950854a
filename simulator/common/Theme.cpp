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
    const fs::path toData = fs::path(DATA_FOLDER).lexically_relative(PROGRAM_FOLDER);
    const fs::path installed = (executable.parent_path() / toData / "watch.edj").lexically_normal();
    if (fs::exists(installed))
        return installed;
    for (fs::path folder = executable.parent_path(); folder != folder.root_path();
         folder = folder.parent_path())
    {
        if (fs::exists(folder / "theme/watch.edj"))
            return folder / "theme/watch.edj";
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
