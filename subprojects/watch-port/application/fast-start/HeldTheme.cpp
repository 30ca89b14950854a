#include "application/fast-start/HeldTheme.h"

#include "base/FreeDeleter.h"

#include <memory>

namespace WatchPort
{

HeldTheme::HeldTheme()
{
    const std::unique_ptr<char, FreeDeleter> path(elm_theme_list_item_path_get("default", nullptr));
    mFile = !path ? nullptr : eina_file_open(path.get(), EINA_FALSE);
    if (mFile)
        mHold = edje_mmap_color_class_iterator_new(mFile);
}

HeldTheme::~HeldTheme()
{
    if (mHold)
        eina_iterator_free(mHold);
    if (mFile)
        eina_file_close(mFile);
}

} // namespace WatchPort
