#ifndef QIVO_UI_COMMON_UTIL_APPCONTROLLUTIL_H
#define QIVO_UI_COMMON_UTIL_APPCONTROLLUTIL_H

#include <app_control.h>
#include <map>
#include <memory>
#include <string>

namespace QivoUi
{

/** A launch request's extra data, key to value, in the keys' byte order. */
using ExtraDataMap = std::map<std::string, std::string>;

/** Shared by everyone who holds it; an empty pointer means that there is no extra data. */
using ExtraDataMapPtr = std::shared_ptr<ExtraDataMap>;

} // namespace QivoUi

/**
 * Launching other applications and answering launch requests. The names are spelled so.
 *
 * Failures are logged as errors and never reported to the caller. Of extra data, only entries
 * whose key and value are both not empty are sent. Every launch carries the entry
 * "__FAKE_EFFECT__" = "ON" besides.
 */
class AppControllUtil
{
public:
    AppControllUtil() = default;
    virtual ~AppControllUtil() = default;

    /**
     * Launches an application.
     *
     * @param operation the operation to ask for; the watch's default one when empty
     *
     * Logs error "exception !! [[LaunchApp]REASON]" when a step fails; nothing is sent then.
     */
    static void LaunchApp(std::string appId, std::string operation);

    /** Launches an application with extra data; as LaunchApp(). */
    static void LaucnhAppWithExtraData(std::string appId, std::string operation,
                                       QivoUi::ExtraDataMapPtr extraData);

    /** Deliberately does nothing: no launch, no log line. */
    static void LaucnhAppWithExtraDataWhenNotPowerSavingMode(std::string appId,
                                                             std::string operation,
                                                             QivoUi::ExtraDataMapPtr extraData);

    /**
     * Answers a launch request.
     *
     * Extra data travels only with a failure: deliberate, a successful reply says everything.
     * A null request is used all the same and logged afterwards, "Invalid appControl value"; what
     * the watch refuses is logged as by Application::ReplyAppControll().
     */
    static void ReplyAppControl(app_control_h request, bool succeeded,
                                QivoUi::ExtraDataMapPtr extraData);

    /** A request's extra data in a new map; never an empty pointer. */
    static QivoUi::ExtraDataMapPtr GetExtraData(app_control_h request);

    /**
     * Stores one entry of a request's extra data; a value that cannot be read is stored empty.
     *
     * @param userData the map
     * @return whether to go on: false, with error "map is NULL", without a map
     */
    static bool ForEachExtraData(app_control_h request, const char* key, void* userData);
};

#endif
