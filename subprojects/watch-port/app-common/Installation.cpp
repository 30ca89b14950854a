#include "app-common/Installation.h"

#include <algorithm>
#include <vector>

namespace WatchPort
{

namespace fs = std::filesystem;

namespace
{
bool FolderExists(const fs::path& path)
{
    std::error_code ignored;
    return fs::is_directory(path, ignored);
}

// One build of the port serves all the programs of a build tree, each with resources of its own;
// and an installed port those that were built elsewhere.
fs::path FindTheme(const fs::path& beside, const fs::path& resourceRoot)
{
    std::error_code ignored;
    std::vector<fs::path> places = {beside};
    for (fs::path root = resourceRoot; root != root.root_path(); root = root.parent_path())
        places.push_back(root / BUILT_THEME);
    places.emplace_back(INSTALLED_THEME);
    const auto found =
        std::find_if(places.begin(), places.end(),
                     [&](const fs::path& place) { return fs::exists(place, ignored); });
    return found == places.end() ? beside : *found;
}

fs::path ReadRunningExecutable()
{
    std::error_code ignored;
    return fs::read_symlink("/proc/self/exe", ignored);
}
} // namespace

std::optional<Installation> FindInstallation(const fs::path& executable)
{
    const fs::path program = executable.filename();
    for (fs::path root = executable.parent_path(); !root.empty(); root = root.parent_path())
    {
        const fs::path data = root / DATA_FOLDER;
        if (FolderExists(data / program))
            return Installation{program, data / program, root / LOCALE_FOLDER,
                                FindTheme(data / "watch-port/platform.edj", root)};
        if (FolderExists(root / "res"))
            return Installation{program, root / "res", root / "res/locale",
                                FindTheme(root / BUILT_THEME, root)};
        if (root == root.root_path())
            break;
    }
    return std::nullopt;
}

const fs::path& RunningExecutable()
{
    // Read once: the kernel adds " (deleted)" when an update replaces the running file.
    static const fs::path executable = ReadRunningExecutable();
    return executable;
}

} // namespace WatchPort
