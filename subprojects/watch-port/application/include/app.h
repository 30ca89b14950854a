#ifndef WATCH_PORT_APP_H
#define WATCH_PORT_APP_H

/**
 * The life of an application with a user interface.
 *
 * A run, from ui_app_main() to its return:
 *
 *     create -> app_control -> (resume -> pause)* -> terminate
 *
 * - create: makes the window. The toolkit is up, the text domain is bound.
 * - app_control: a launch request. The first one is that of the command line, or, as a service, the
 *   first to arrive over the session bus. Later ones may come at any time until the end. Before a
 *   later one is delivered, on X11, the newest window that is not hidden is raised and activated,
 *   restored if it was minimised; the callback may lower or hide it again. Wayland lets no client
 *   do that: there the application stays where it is.
 * - resume: a window of the process can be seen for the first time, or again.
 * - pause: none can be seen any more: lowered, covered, iconified, hidden, deleted or closed. An
 *   application that lowers its window has left, also where nothing lies behind it; it is back when
 *   it raises, activates or shows the window, when a launch request arrives, when the window was
 *   covered and is no more, and on X11 when the user activates the window again or presses in it.
 *   Where nothing tells whether a window is covered (off-screen engines, Wayland), a window can be
 *   seen from its first frame on until it is hidden, deleted, closed or lowered, which on Wayland
 *   minimises it. While one window of the application takes the place of another none need be seen:
 *   the display has five seconds to show the one that was opened, or lay behind one that is gone.
 * - terminate: the last call. It may release what user_data points to: no callback that the
 *   application has registered anywhere (device, settings, launch replies, keys, bezel) is called
 *   after it.
 *
 * The user closes a window: when it is the last one that is not hidden and the toolkit is to delete
 * it (elm_win_autodel_set()), the application ends as by ui_app_exit(), and the window is deleted
 * after terminate. The toolkit deletes any other window with autodel at once. A window without it
 * stays, and the application decides in the window's "delete,request" callback.
 *
 * All callbacks are called on the main loop's thread. A null one is skipped.
 *
 * Launch requests over the session bus. An application whose resource folder holds the file
 * PROGRAM.id, with the application id (such as "org.example.Clock") as its only line, owns that id
 * as its name on the session bus. At the object path of the id ("/org/example/Clock"; a "-" of the
 * id is a "_" there) it offers
 *
 *     org.freedesktop.Application, as the desktop has it
 *         Activate(a{sv})                the default operation
 *         Open(as, a{sv})                the operation "open"; the extra data "uris" holds the
 *                                        URIs, one a line
 *         ActivateAction(s, av, a{sv})   the action is the operation; the parameter, none or one
 *                                        a{sv}, is the extra data: the texts in it, for a value of
 *                                        another type is left out
 *     org.watchport.Launch1
 *         Launch(s operation, a{ss} extra data) -> (i result, a{ss} extra data)
 *                                        answered by app_control_reply_to_launch_request()
 *     org.watchport.Theme1
 *         Reload() -> (u objects)        loads the themes below the resources again; how many
 *                                        objects of the windows show them
 *
 * The first interface's methods are answered, with nothing, when the app_control callback has
 * returned. The platform data (the last argument) are not used; an empty key of the extra data is
 * left out. Other arguments and an empty operation are answered with the error InvalidArgs of
 * org.freedesktop.DBus.Error, more than 1 MiB of text or 4096 entries with LimitsExceeded. So is a
 * Launch while 256 others wait for their reply, and whatever would make the requests that wait take
 * more than 16 MiB. A call that wants no reply gets none, and no error either.
 *
 * A second start finds the name owned, hands its command line's request to the owner, and ends with
 * APP_ERROR_NONE before any callback, or with APP_ERROR_NOT_FORWARDED when the owner has not taken
 * it within five seconds. An owner that ends in that time is succeeded by the second start. When
 * the bus goes, the application goes on without it, also when another bus comes.
 *
 * Environment: ELM_ENGINE=buffer and ELM_ENGINE=shot:OPTIONS need no display, DLOG_LEVEL filters
 * the log (see dlog.h). The toolkit's other variables (ELM_SCALE, ELM_THEME and so on, and
 * EVAS_FONT_DPI) are for desktops: they are taken out of the environment, so that the application
 * looks and behaves as on the watch.
 */

#include <app_common.h>
#include <app_control.h>
#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

/** The results of ui_app_main(); -1 is left to the application's own use. */
typedef enum
{
    APP_ERROR_NONE = 0,
    APP_ERROR_INVALID_PARAMETER = -2,    /**< No arguments or no callbacks were given. */
    APP_ERROR_ALREADY_RUNNING = -3,      /**< Called from within a run. */
    APP_ERROR_INVALID_COMMAND_LINE = -4, /**< A line on stderr says what is wrong with it. */
    APP_ERROR_NO_DISPLAY = -5,           /**< None is named, or it does not answer for 5 seconds. */
    APP_ERROR_NO_TOOLKIT = -6,           /**< The toolkit or a thread did not start. */
    APP_ERROR_NOT_CREATED = -7,          /**< The create callback returned false. */
    APP_ERROR_NOT_FORWARDED = -8,        /**< Runs already; that process took no request. */
    APP_ERROR_NO_SESSION_BUS = -9,       /**< Started with --service, without a bus or an id. */
    APP_ERROR_OUT_OF_MEMORY = -10,       /**< Only as the exit status, see ui_app_exit(). */
} app_error_e;

/** @return False when the application cannot run: no other callback is called then. */
typedef bool (*app_create_cb)(void* user_data);
/** Releases what create has made. */
typedef void (*app_terminate_cb)(void* user_data);
/** The application is no longer in sight. */
typedef void (*app_pause_cb)(void* user_data);
/** The application has come in sight. */
typedef void (*app_resume_cb)(void* user_data);
/**
 * @param app_control The request, valid during the call. When its sender waits for a reply, it
 * stays valid until the turn of the main loop in which it is replied to has ended, or until 25
 *        seconds after the call, when the sender waits no more, or until terminate has returned.
 */
typedef void (*app_control_cb)(app_control_h app_control, void* user_data);

/** The application's callbacks. */
typedef struct
{
    app_create_cb create;
    app_terminate_cb terminate;
    app_pause_cb pause;
    app_resume_cb resume;
    app_control_cb app_control;
} ui_app_lifecycle_callback_s;

/**
 * Runs the application until ui_app_exit(), SIGTERM, SIGINT, SIGHUP, the toolkit's own exit or the
 * end of its last window by the user's hand.
 *
 * A signal that comes while a display does not answer ends the run before any callback: with
 * APP_ERROR_NONE where the application has its name on the session bus or handles the signal
 * itself, else as the signal does by default.
 *
 * Before create: the command line is read, the display is looked for, the locale is set (with
 * UTF-8 where the environment's is not installed, and never one in which gettext looks at no
 * catalogue), the text domain PROGRAM (the executable's base name) is bound to the installation's
 * catalogues, and the watch's theme is laid over the toolkit's.
 * A window that has no size of its own gets that of the watch's screen, unless the window manager
 * gives it another: that of the X screen where it is square, else 360 by 360 pixels. The toolkit's
 * scale follows that size, 1.3 at 360 pixels, and a finger drags what scrolls.
 *
 * Command line: [--operation OP] [--extra KEY=VALUE]..., also as --operation=OP and
 * --extra=KEY=VALUE, make the first launch request; the last one of an operation or a key holds.
 * --service, alone, is for the session bus, which starts the application to have a message taken:
 * create waits for the first launch request to arrive, and a process to which none comes within ten
 * seconds ends with APP_ERROR_NONE and without a callback.
 * --help prints the usage and returns 0. Anything else ends with one line on stderr.
 *
 * Log, tag "WATCH_PORT": an error for each negative result but that of the command line; a warning
 * for a catalogue or a theme that is missing or broken, for a display that has not answered within
 * five seconds, and for a session bus that is missing or has not answered within two seconds (three
 * when it answers in part); at info level "first frame" once the first frame after the first resume
 * has been drawn and the X server has it.
 *
 * A display server that falls silent later and holds the main thread up ends the process within
 * five seconds, with one error line and the exit status of APP_ERROR_NO_DISPLAY; no callback is
 * called then. An application that stands still does not notice. A server that another client has
 * grabbed for five seconds is silent, too.
 *
 * An exception of a callback leaves ui_app_main() when the toolkit is shut down; no further
 * callback is called then. Only std::bad_alloc does not where a message of a bus has led to the
 * call (device, settings, launch replies): it is one error line. A process has one run: the toolkit
 * does not start twice without complaints and leaks.
 *
 * @param callbacks Copied.
 * @param user_data Passed to each callback; not touched after terminate has been called.
 * @return APP_ERROR_NONE or another value of app_error_e, which as a program's exit status is
 *         256 more.
 */
int ui_app_main(int argc, char** argv, ui_app_lifecycle_callback_s* callbacks, void* user_data);

/**
 * Asks the application to end: the callback at work finishes, a resumed application is paused,
 * then it is terminated, and ui_app_main() returns 0.
 *
 * May be called in any callback and again and again. In create (which must then return true): no
 * launch request is delivered; in the first app_control: the application is never resumed.
 * Without a running application it only prepares for exhausted memory, as follows.
 *
 * A new-handler (std::set_new_handler()) that calls it need do no more. operator new tries again
 * with 1 MiB that was kept for the way out. When memory is exhausted once more before the process
 * has ended, or was so before create, the process ends at once: with one error line, the exit
 * status 246 (APP_ERROR_OUT_OF_MEMORY) and no further callback. So from the first call on, the
 * port's own new-handler stands in the place of the application's; where there was none,
 * std::bad_alloc is thrown as ever. Memory that is missing in C code is the toolkit's to bear.
 */
void ui_app_exit(void);

#ifdef __cplusplus
}
#endif

#endif
