#include "app-common/Installation.h"

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

// One build of the port serves all the programs of a build tree, each with resources of its own.
fs::path FindBuiltTheme(const fs::path& resourceRoot)
{
    const fs::path theme = "subprojects/watch-port/theme/platform.edj";
    std::error_code ignored;
    for (fs::path root = resourceRoot; root != root.root_path(); root = root.parent_path())
    {
        if (fs::exists(root / theme, ignored))
            return root / theme;
    }
    return resourceRoot / theme;
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
        const fs::path share = root / "share";
        if (FolderExists(share / program))
            return Installation{program, share / program, share / "locale",
                                share / "watch-port/platform.edj"};
        if (FolderExists(root / "res"))
            return Installation{program, root / "res", root / "res/locale", FindBuiltTheme(root)};
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
