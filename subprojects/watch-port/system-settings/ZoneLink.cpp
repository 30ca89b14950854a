#include "system-settings/ZoneLink.h"

#include "base/CallBack.h"
#include "dlog/PortLog.h"

#include <cstring>
#include <filesystem>
#include <utility>

namespace WatchPort
{

namespace
{
// A link that is replaced has an event in its folder only.
constexpr char kFolder[] = "/etc";
constexpr char kLink[] = "/etc/localtime";

std::string ReadFileTime()
{
    std::error_code error;
    const auto time = std::filesystem::last_write_time(kLink, error);
    return error ? "UTC" : std::to_string(time.time_since_epoch().count());
}
} // namespace

std::string ReadZoneLink()
{
    constexpr std::string_view kDatabase = "zoneinfo/";
    std::error_code error;
    const std::string target = std::filesystem::read_symlink(kLink, error);
    if (error)
        return ReadFileTime();
    const size_t at = target.find(kDatabase);
    return at == target.npos ? target : target.substr(at + kDatabase.size());
}

ZoneLink::ZoneLink(std::function<void()> onEvent) : mOnEvent(std::move(onEvent))
{
    // What begins here begins the toolkit, and this comes first of all in an application.
    ecore_app_no_system_modules();
    ecore_file_init();
    mMonitor = ecore_file_monitor_add(kFolder, SFileEventCB, this);
    if (!mMonitor)
        PORT_LOG_WARN("%s cannot be watched: another time zone will not be noticed", kLink);
}

ZoneLink::~ZoneLink()
{
    if (mTelling)
        ecore_job_del(mTelling);
    if (mMonitor)
        ecore_file_monitor_del(mMonitor);
    ecore_file_shutdown();
}

void ZoneLink::SFileEventCB(void* data, Ecore_File_Monitor* /*monitor*/, Ecore_File_Event /*event*/,
                            const char* path)
{
    auto* self = static_cast<ZoneLink*>(data);
    if (std::strcmp(path, kLink) == 0 && !self->mTelling)
        self->mTelling = ecore_job_add(STellCB, self);
}

void ZoneLink::STellCB(void* data)
{
    auto* self = static_cast<ZoneLink*>(data);
    self->mTelling = nullptr;
    CallBack(self->mOnEvent);
}

} // namespace WatchPort
