#ifndef QIVO_UI_GUIDE_APPLICATION_H
#define QIVO_UI_GUIDE_APPLICATION_H

#include "common/AppEventListener.h"
#include "common/util/AppControllUtil.h"
#include <Ecore.h>
#include <Elementary.h>
#include <app.h>
#include <list>
#include <string>
#include <system_settings.h>
#include <ui_extension.h>

namespace QivoUi
{

/**
 * The base of the application: binds the watch's application framework to virtual hooks.
 *
 * The order of a run:
 *  1. main() makes the object with CreateApplication() and enters the main loop.
 *  2. OnAppCreateImpl(): theme, main window, colour and font tables. No screen yet.
 *  3. The first launch request: OnSetupLayout() builds background, conformant, main layout and
 *     navigation frame and calls ShowView(); then AppControllOperationImpl() gets the operation.
 *     Later requests only replace the kept extra data.
 *  4. OnAppResumeImpl(): the window is in the foreground.
 *  5. OnAppPauseImpl(): it no longer is; the application then always ends. It never stays in
 *     the background, that is a rule of the product.
 *  6. OnAppTerminateImpl(), after which the object is deleted.
 *
 * Everything runs on the main loop. Failures are logged and end the step in progress; the
 * process goes on. Widgets belong to the widget tree, listeners to whoever registered them.
 */
class Application
{
public:
    /** Forgets the main window of an earlier application; makes nothing. */
    Application();

    /**
     * Leaves the window, the key handlers, the tables and the navigation frame where they are.
     *
     * Whoever deletes an application that is still resumed, or was resumed twice without a pause
     * between, must not let the main loop hand out another key: its handler would reach the dead.
     */
    virtual ~Application() = default;

    /**
     * Builds the object tree and the navigation frame, then shows the view.
     *
     * @return ShowView()'s answer; false, with error "[Failed] Create BackGround" or
     *         "[Failed] Create Main Layout", when the tree could not be built
     */
    virtual bool OnSetupLayout();

    /**
     * Loads the theme, makes the main window and loads the tables.
     *
     * Logs error "[Failed] Create Window", and leaves the tables, when there is no window.
     */
    virtual void OnAppCreateImpl();

    /** The system's time was set, or NotifyLanguageChanged() was called. */
    virtual void OnAppSystemLangChangedImpl() {}

    /**
     * Writes the marker line and destroys the navigation frame. Listeners are not told.
     *
     * The frame stays in the list of listeners: a derived application must not notify them
     * afterwards, nor the framework pause or resume it.
     */
    virtual void OnAppTerminateImpl();

    /** Tells the listeners, then ends the application. */
    virtual void OnAppPauseImpl();

    /** Starts to watch the power key and tells the listeners. */
    virtual void OnAppResumeImpl();

    /** The pause that is under way was caused by the power key. */
    virtual void OnAppPausedByPowerKey() {}

    /**
     * Handles the first launch request.
     *
     * @param extraData never empty when it comes from a request; an empty pointer means none
     * @return whether the operation was handled, false here; nobody asks
     */
    virtual bool AppControllOperationImpl(std::string /*operation*/, ExtraDataMapPtr /*extraData*/)
    {
        return false;
    }

    /** Deliberately kept for derived applications, though nothing here calls it. */
    virtual bool OnVocraOperation(ExtraDataMapPtr /*extraData*/) { return false; }

    /** The wallet's own font table: deliberately that of another package than this one. */
    virtual std::string GetFontTablePath();

    /** The wallet's own colour table: deliberately that of another package than this one. */
    virtual std::string GetColorTablePath();

    /** Shows the first screen, at the end of OnSetupLayout(). */
    virtual bool ShowView() = 0;

    /**
     * The framework's callbacks, whose user data is the application. Each writes the marker line
     * and then calls its hook; creation always succeeds.
     */
    static bool SOnAppCreate(void* data);
    static void SOnAppPause(void* data);
    static void SOnAppResume(void* data);

    /** Terminates, unsets the settings callbacks, deletes the application; the marker is last. */
    static void SOnAppTerminate(void* data);

    /**
     * Takes a launch request: keeps its extra data and, the first time in the process, builds
     * the screen and hands the operation on.
     *
     * Logs information "operation:[%s]", or error "get operation fail" and ignores the request.
     */
    static void SOnAppControl(app_control_h request, void* data);

    /**
     * The system's settings have changed: language and region hand the language to the toolkit,
     * the time runs the language hook, the time format (spelled so) only writes its
     * marker line.
     */
    static void SOnLanguageChanged(system_settings_key_e key, void* data);
    static void SOnRegionChanged(system_settings_key_e key, void* data);
    static void SOnSystemTimeChanged(system_settings_key_e key, void* data);
    static void SOnDateAndTImeFormatChanged(system_settings_key_e key, void* data);

    /**
     * The allocator's handler of exhausted memory: asks the framework to exit.
     *
     * It deliberately neither throws nor frees, so an allocation that stays impossible asks
     * again and again.
     */
    static void SOnOutOfMemory();

    /** Registers the theme file, over which the toolkit finds our groups, and the base scale. */
    void SetUpAppInfo();

    /** Makes and shows the main window; null, with error "elm_win_add", on failure. */
    Evas_Object* CreateWindow();

    /** Makes the window's background; null, without a line of its own, on failure. */
    Evas_Object* CreateBackGround(Evas_Object* window);

    /** Makes the conformant; null, with error "[Failed] comformant object create", on failure. */
    Evas_Object* CreateConformant(Evas_Object* window);

    /** Makes the conformant's content; null, with error "Failed elm_layout_add.", on failure. */
    Evas_Object* CreateMainLayout(Evas_Object* conformant);

    /**
     * Loads the wallet's colour and font tables; they stay for the life of the process.
     *
     * Logs nothing; a table that cannot be loaded is null, and handed on as such.
     */
    void LoadColorTable();

    /**
     * The system's language as the watch gives it, logged as warning "Lang region text : %s".
     *
     * @return empty, with error "system_settings_get_value_string(
     *         SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE) failed [%d]", when the watch gives none
     */
    static std::string GetCurrentLocale();

    /**
     * Hands the system's language, unless it is empty, to the toolkit, which tells every widget.
     *
     * Logs information "currentLanguage:[%s]". Neither the listeners nor the hook are told.
     */
    static void AppSystemLangChanged(void* data);

    /** Watches key releases; an earlier handler is not taken away first. */
    void RegisterPowerKeyEvent();

    /** Stops watching key releases. */
    void UnRegisterPowerKeyEvent();

    /**
     * Notes a release of the power key while resumed; always passes the event on.
     *
     * Logs information "POWER KEY Released!", and nothing for another key.
     */
    static Eina_Bool OnKeyReleasedCB(void* data, int type, void* event);

    /**
     * Adds a listener at the end; one held already moves there. Null is ignored.
     *
     * One that is added while the listeners are told of an event hears of the next one. A
     * listener that is told may take itself or others away, which may die then; the application
     * itself must not die before all of them have been told.
     */
    void RegisterAppEventListener(AppEventListener* listener);

    /** Removes a listener; null is ignored. */
    void UnRegisterAppEventListener(AppEventListener* listener);

    /** For derived applications that announce more than the framework does; unused here. */
    void NotifyAppPaused();
    void NotifyAppResumed();
    void NotifyAppTerminate();
    void NotifySystemLangChanged();
    void NotifyLanguageChanged();

    /** Passes an operation to AppControllOperationImpl(). @return true, whatever that says */
    bool OnAppControllOperation(std::string operation, ExtraDataMapPtr extraData);

    /** Keeps an operation and its extra data; for derived applications, unused here. */
    void SaveOperation(std::string operation, ExtraDataMapPtr extraData);

    /** Keeps the extra data of the latest launch request. */
    void SetLaunchExtraData(ExtraDataMapPtr extraData) { mLaunchExtraData = extraData; }

    /** For derived applications, unused here; cleared by the first launch request. */
    void SetResumeFlag(bool flag) { mResumeFlag = flag; }

    /**
     * Answers a launch request without extra data; for derived applications, unused here.
     *
     * Writes the marker line; logs error "app_control_create failed, %d" or
     * "app_control_reply_to_launch_request failed! [%d]".
     */
    void ReplyAppControll(app_control_h request, bool succeeded);

private:
    enum AppState
    {
        APP_STATE_NONE,
        APP_STATE_RESUMED,
        APP_STATE_PAUSED,
    };

    void NotifyListeners(void (AppEventListener::*event)());

    // Deliberately kept though nothing reads them: the flag, the operation and its extra data.
    bool mResumeFlag = false;
    ExtraDataMapPtr mLaunchExtraData;
    std::string mOperation;
    ExtraDataMapPtr mOperationExtraData;
    std::list<AppEventListener*> mAppEventListenerList;
    int mAppState = APP_STATE_NONE;
    Ecore_Event_Handler* mPowerKeyHandler = nullptr;
    // Deliberately never set here; it keeps its slot and is cleared with the other.
    Ecore_Event_Handler* mExtraKeyHandler = nullptr;
    bool mIsPowerKeyReleased = false;
    Evas_Object* mMainLayout = nullptr;
    Evas_Object* mBackGround = nullptr;
    Evas_Object* mAppConformant = nullptr;
    // The theme library alone names the types of its handles.
    decltype(uxt_theme_add_color_table(nullptr)) mColorTable = nullptr;
    decltype(uxt_theme_add_font_table(nullptr)) mFontTable = nullptr;
    static Evas_Object* mWindow;
};

} // namespace QivoUi

/** Makes the one application object, which the terminate callback deletes. */
QivoUi::Application* CreateApplication();

namespace QivoUi
{

// So that all that is of the application has its name in here.
using ::CreateApplication;

} // namespace QivoUi

#endif
