#ifndef WATCH_PORT_APP_CONTROL_APPLICATION_ID_H
#define WATCH_PORT_APP_CONTROL_APPLICATION_ID_H

#include <string>
#include <string_view>

namespace WatchPort
{

/** Tells whether the text is a well-known bus name, as app_control_set_app_id() describes it. */
bool IsApplicationId(std::string_view text);

/** Returns where the application of that id has its object: "/org/example/My_Clock". */
std::string ApplicationObjectPath(std::string_view applicationId);

} // namespace WatchPort

#endif
