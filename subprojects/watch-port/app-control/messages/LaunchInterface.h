#ifndef WATCH_PORT_APP_CONTROL_MESSAGES_LAUNCH_INTERFACE_H
#define WATCH_PORT_APP_CONTROL_MESSAGES_LAUNCH_INTERFACE_H

#include <chrono>

namespace WatchPort
{

/** The desktop's interface of an application. */
constexpr char kApplicationInterface[] = "org.freedesktop.Application";

/** The port's own beside it, for requests with a reply. */
constexpr char kLaunchInterface[] = "org.watchport.Launch1";

/** The port's own for those who write themes. */
constexpr char kThemeInterface[] = "org.watchport.Theme1";

/** How long a sender waits for an application's reply. */
constexpr std::chrono::seconds kReplyPatience(25);

/** What an application's object says of itself. */
constexpr char kIntrospection[] = R"(<!DOCTYPE node PUBLIC
 "-//freedesktop//DTD D-BUS Object Introspection 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/introspect.dtd">
<node>
 <interface name="org.freedesktop.DBus.Introspectable">
  <method name="Introspect"><arg name="data" type="s" direction="out"/></method>
 </interface>
 <interface name="org.freedesktop.Application">
  <method name="Activate"><arg name="platform_data" type="a{sv}" direction="in"/></method>
  <method name="Open">
   <arg name="uris" type="as" direction="in"/>
   <arg name="platform_data" type="a{sv}" direction="in"/>
  </method>
  <method name="ActivateAction">
   <arg name="action_name" type="s" direction="in"/>
   <arg name="parameter" type="av" direction="in"/>
   <arg name="platform_data" type="a{sv}" direction="in"/>
  </method>
 </interface>
 <interface name="org.watchport.Launch1">
  <method name="Launch">
   <arg name="operation" type="s" direction="in"/>
   <arg name="extra_data" type="a{ss}" direction="in"/>
   <arg name="result" type="i" direction="out"/>
   <arg name="extra_data" type="a{ss}" direction="out"/>
  </method>
 </interface>
 <interface name="org.watchport.Theme1">
  <method name="Reload"><arg name="objects" type="u" direction="out"/></method>
 </interface>
</node>
)";

} // namespace WatchPort

#endif
