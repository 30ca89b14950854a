#ifndef QIVO_UI_COMMON_APPEVENTLISTENER_H
#define QIVO_UI_COMMON_APPEVENTLISTENER_H

namespace QivoUi
{

/**
 * Hears of the application's life.
 *
 * Register with Application::RegisterAppEventListener(), which does not take ownership: a
 * listener unregisters itself before it dies. Each operation does nothing unless overridden.
 */
class AppEventListener
{
public:
    virtual ~AppEventListener() = default;

    /** Offered to applications that announce their creation; nothing here calls it. */
    virtual void OnAppCreate() {}

    /** The application is ending; told by Application::NotifyAppTerminate() only. */
    virtual void OnAppTerminate() {}

    /** The window has left the foreground. */
    virtual void OnAppPause() {}

    /** The window is in the foreground; may come more than once without a pause between. */
    virtual void OnAppResume() {}

    /** The system's language has changed; told by Application::NotifySystemLangChanged() only. */
    virtual void OnSystemLangChanged() {}
};

} // namespace QivoUi

#endif
