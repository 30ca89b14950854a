#ifndef QIVO_UI_COMMON_UTIL_COMMONUTIL_H
#define QIVO_UI_COMMON_UTIL_COMMONUTIL_H

#include <string>

namespace QivoUi
{

/** Paths of the application's own files. */
class CommonUtil
{
public:
    CommonUtil() = default;
    virtual ~CommonUtil() = default;

    /**
     * The full path of a resource, which need not exist.
     *
     * @param fileName relative to the resource directory, such as "edje/qivoui.edj"
     * @return the path; empty, without a log line, when the watch gives no directory
     */
    static std::string GetResourcePath(std::string fileName);

    /** The full path of a file below the data directory; as GetResourcePath(). */
    static std::string GetDataPath(std::string fileName);
};

} // namespace QivoUi

#endif
