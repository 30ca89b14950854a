#ifndef WATCH_PORT_APP_CONTROL_H
#define WATCH_PORT_APP_CONTROL_H

/**
 * Launch requests: what one application asks of another one, or was asked itself.
 *
 * A handle holds an operation, the id of the application addressed, and extra data: one text
 * for each key. All texts are UTF-8. Call everything on the main loop's thread.
 *
 * Each function returns APP_CONTROL_ERROR_NONE or one of the other values of
 * app_control_error_e. A result that is none of APP_CONTROL_ERROR_NONE and
 * APP_CONTROL_ERROR_KEY_NOT_FOUND comes with one error line in the log.
 */

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

/** The operation of a request that names none. */
#define APP_CONTROL_OPERATION_DEFAULT "default"

/** A launch request; made by app_control_create(). */
typedef struct app_control_s* app_control_h;

/** The results of the functions below. */
typedef enum
{
    APP_CONTROL_ERROR_NONE = 0,
    APP_CONTROL_ERROR_INVALID_PARAMETER = -2, /**< Null, empty, not UTF-8, no valid id, too big. */
    APP_CONTROL_ERROR_OUT_OF_MEMORY = -3,     /**< No memory; nothing was changed. */
    APP_CONTROL_ERROR_KEY_NOT_FOUND = -4,     /**< The extra data has no such key. */
    APP_CONTROL_ERROR_APP_ID_NOT_SET = -5,    /**< The request has no application id. */
    APP_CONTROL_ERROR_NO_SESSION_BUS = -6,    /**< There is no bus, or it does not answer. */
    APP_CONTROL_ERROR_APP_NOT_FOUND = -7,     /**< Neither running nor known to the bus. */
    APP_CONTROL_ERROR_NOT_SENT = -8,          /**< The bus connection broke on sending. */
    APP_CONTROL_ERROR_NO_SENDER = -9,         /**< Nobody waits for an answer to the request. */
    APP_CONTROL_ERROR_ALREADY_REPLIED = -10,  /**< The request has had its reply. */
} app_control_error_e;

/** The outcome of a request. */
typedef enum
{
    APP_CONTROL_RESULT_SUCCEEDED = 0,
    APP_CONTROL_RESULT_FAILED = -1,
} app_control_result_e;

/**
 * Called with the outcome of a request that was sent.
 *
 * @param request A copy of the request as it was sent, valid during the call.
 * @param reply What the application replied, valid during the call: its extra data are the answer.
 *        Null when the application took the request but is none that can reply, and when no reply
 *        came.
 * @param result The result that the application replied. Without a reply: SUCCEEDED when the
 *        application took the request and is none that can reply, FAILED when it refused it,
 *        could not be started, ended, or did not answer within 25 seconds (the bus's own limit
 *        for starting a service is the same), or when its reply was too big.
 * @param user_data As given to app_control_send_launch_request().
 */
typedef void (*app_control_reply_cb)(app_control_h request, app_control_h reply,
                                     app_control_result_e result, void* user_data);

/**
 * Called for one key of the extra data.
 *
 * @param app_control The request; it may be changed, not destroyed.
 * @param key Valid during the call.
 * @return Whether to go on with the next key.
 */
typedef bool (*app_control_extra_data_cb)(app_control_h app_control, const char* key,
                                          void* user_data);

/**
 * Makes a request with the operation APP_CONTROL_OPERATION_DEFAULT, no application id and no
 * extra data.
 *
 * @param app_control Receives the handle, which app_control_destroy() releases.
 */
int app_control_create(app_control_h* app_control);

/** Releases a request and its texts. Copies that were taken from it stay valid. */
int app_control_destroy(app_control_h app_control);

/**
 * Gets the operation.
 *
 * @param operation Receives a copy; the caller frees it with free(). Untouched on failure.
 */
int app_control_get_operation(app_control_h app_control, char** operation);

/** Sets the operation; a copy is kept. An empty one is an invalid parameter. */
int app_control_set_operation(app_control_h app_control, const char* operation);

/**
 * Sets the application that the request is for; a copy is kept.
 *
 * @param app_id The application's name on the session bus, such as "org.example.Clock": at least
 *        two elements of letters, digits, "-" and "_", none of which starts with a digit, with
 *        dots between them, 255 bytes at most. Anything else is an invalid parameter.
 */
int app_control_set_app_id(app_control_h app_control, const char* app_id);

/**
 * Gets the text of a key of the extra data.
 *
 * @param value Receives a copy; the caller frees it with free(). Untouched on failure.
 */
int app_control_get_extra_data(app_control_h app_control, const char* key, char** value);

/**
 * Sets the text of a key of the extra data; copies are kept. A text that the key had is replaced.
 *
 * @param key Not empty.
 * @param value May be empty.
 */
int app_control_add_extra_data(app_control_h app_control, const char* key, const char* value);

/**
 * Calls back for each key of the extra data, in byte order, until the callback returns false.
 *
 * It visits the keys that are there at the start, not those that the callback adds.
 */
int app_control_foreach_extra_data(app_control_h app_control, app_control_extra_data_cb callback,
                                   void* user_data);

/**
 * Sends the request to its application over the session bus, which starts it if necessary.
 *
 * With a callback, the application is asked for a reply through org.watchport.Launch1, which every
 * application of the port offers. Without a callback, and when the application has no such
 * interface, it is reached through the desktop's org.freedesktop.Application: Activate for the
 * default operation without extra data, else ActivateAction with the operation as the action
 * and the extra data as its parameter, a dictionary of texts (a{sv}).
 *
 * The request has been handed to the bus on return and may be destroyed. What became of it is known
 * later, in the main loop. With a callback, the process must live on until that is called, for the
 * second way is tried in the main loop too. It must live on also when there is more text than the
 * bus takes at once, some 200 KB, for the main loop sends the rest. Asking the bus for the
 * application takes two seconds at most, normally about a millisecond.
 *
 * @param callback Called once with what became of it, unless the main loop ends before; null:
 *        nobody wants to know, and a failure is logged as a warning.
 * @param user_data Passed to the callback.
 * @return Besides APP_CONTROL_ERROR_NONE: INVALID_PARAMETER (also for more than 1 MiB of text
 *         or 4096 entries: requests are no way to pass files), APP_ID_NOT_SET, NO_SESSION_BUS,
 *         APP_NOT_FOUND, NOT_SENT, OUT_OF_MEMORY; the callback is not called then.
 */
int app_control_send_launch_request(app_control_h app_control, app_control_reply_cb callback,
                                    void* user_data);

/**
 * Answers a request that the application got. Its sender gets the result and the extra data.
 *
 * Only a sender who gave a callback to app_control_send_launch_request() waits for a reply; the
 * request of such a sender may be answered later than in the app_control callback, as app.h says.
 *
 * @param reply Made by app_control_create(); its extra data are the answer. May be destroyed on
 *        return.
 * @param request The request that is answered.
 * @param result What became of it.
 * @return Besides APP_CONTROL_ERROR_NONE: INVALID_PARAMETER for a null handle, an unknown
 *         result, more than 1 MiB of text or 4096 entries; NO_SENDER for a request from the command
 * line, from a sender who waits for no reply, and when the bus has gone; ALREADY_REPLIED;
 * OUT_OF_MEMORY.
 */
int app_control_reply_to_launch_request(app_control_h reply, app_control_h request,
                                        app_control_result_e result);

#ifdef __cplusplus
}
#endif

#endif
