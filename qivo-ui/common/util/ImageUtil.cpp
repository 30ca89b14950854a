#include "common/util/ImageUtil.h"

#include "common/Log.h"
#include "common/util/CommonUtil.h"
#include <Elementary.h>
#include <ui_extension.h>

namespace QivoUi
{

namespace
{

Eina_Bool LoadImage(Evas_Object* image, const std::string& imageName, bool fromFile,
                    const std::string& themePath)
{
    if (fromFile)
    {
        return elm_image_file_set(image, imageName.c_str(), nullptr);
    }
    const std::string path =
        themePath.empty() ? CommonUtil::GetResourcePath("edje/qivoui.edj") : themePath;
    return elm_image_file_set(image, path.c_str(), imageName.c_str());
}

} // namespace

Evas_Object* ImageUtil::MakeImageObject(Evas_Object* parent, std::string imageName,
                                        std::string colorCode, bool fromFile, std::string themePath)
{
    Evas_Object* image = elm_image_add(parent);
    if (!LoadImage(image, imageName, fromFile, themePath))
    {
        QIVO_LOG_ERROR("image Path is wrong : %s", imageName.c_str());
        return nullptr;
    }
    evas_object_size_hint_align_set(image, EVAS_HINT_FILL, EVAS_HINT_FILL);
    evas_object_size_hint_weight_set(image, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    if (!colorCode.empty() && uxt_theme_object_set_color(image, colorCode.c_str()) != 0)
    {
        QIVO_LOG_ERROR("Fail to Set Color Code : %s", colorCode.c_str());
        return nullptr;
    }
    return image;
}

Evas_Object* ImageUtil::MakeImageObject(Evas_Object* parent, std::string imageName,
                                        std::string colorCode)
{
    return MakeImageObject(parent, imageName, colorCode, false, "");
}

Evas_Object* ImageUtil::MakeImageObjectWithEdje(Evas_Object* parent, std::string themePath,
                                                std::string groupName, std::string colorCode)
{
    return MakeImageObject(parent, groupName, colorCode, false, themePath);
}

Evas_Object* ImageUtil::MakeImageObjectFromFile(Evas_Object* parent, std::string filePath,
                                                std::string colorCode)
{
    return MakeImageObject(parent, filePath, colorCode, true, "");
}

} // namespace QivoUi
