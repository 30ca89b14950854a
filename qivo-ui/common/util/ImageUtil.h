#ifndef QIVO_UI_COMMON_UTIL_IMAGEUTIL_H
#define QIVO_UI_COMMON_UTIL_IMAGEUTIL_H

#include <Evas.h>
#include <string>

namespace QivoUi
{

/**
 * Makes image widgets that fill their slot.
 *
 * An image comes from a group of a theme file or from a file, and may be tinted with a code of
 * the watch's colour table. It is owned by the widget tree under `parent` and not shown yet; it
 * appears when it is put into a layout's part.
 *
 * On failure every form returns null and logs an error, "image Path is wrong : NAME" or
 * "Fail to Set Color Code : CODE"; the widget made so far stays under the parent.
 */
class ImageUtil
{
public:
    ImageUtil() = default;
    virtual ~ImageUtil() = default;

    /**
     * The full form.
     *
     * @param imageName a file's path when `fromFile`, else a group's name
     * @param colorCode empty to leave the image's own colours
     * @param themePath the theme file of the group, used unchanged; the application's own
     *                  "edje/qivoui.edj" when empty
     */
    static Evas_Object* MakeImageObject(Evas_Object* parent, std::string imageName,
                                        std::string colorCode, bool fromFile,
                                        std::string themePath);

    /** A group of the application's own theme file. */
    static Evas_Object* MakeImageObject(Evas_Object* parent, std::string imageName,
                                        std::string colorCode);

    /** A group of a given theme file; note that the file comes before the group. */
    static Evas_Object* MakeImageObjectWithEdje(Evas_Object* parent, std::string themePath,
                                                std::string groupName, std::string colorCode);

    /** An image file, whose path is used unchanged. */
    static Evas_Object* MakeImageObjectFromFile(Evas_Object* parent, std::string filePath,
                                                std::string colorCode);
};

} // namespace QivoUi

#endif
