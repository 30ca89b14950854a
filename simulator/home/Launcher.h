#ifndef SIMULATOR_HOME_LAUNCHER_H
#define SIMULATOR_HOME_LAUNCHER_H

#include "common/WatchState.h"

#include <Ecore.h>
#include <Evas.h>
#include <functional>
#include <string>
#include <vector>

/**
 * The applications on the home face: the one that is picked, large, and all of them around it when
 * there are several. A tap launches; the bezel picks.
 */
class Launcher
{
public:
    using TapCallback = std::function<void(const std::string& id)>;

    /**
     * @param canvas Owns what is shown, and must outlive this object
     * @param side Of the screen, in pixels
     * @param onTap Called with the id of an application that was tapped
     */
    Launcher(Evas* canvas, int side, TapCallback onTap);
    ~Launcher();
    Launcher(const Launcher&) = delete;
    Launcher& operator=(const Launcher&) = delete;

    /** Shows these; the one that was picked stays so while it is there. */
    void SetApps(const std::vector<InstalledApp>& apps);

    /** Picks another one, so many detents further clockwise. */
    void Turn(int detents);

    /** A face that is not visible takes no taps either. */
    void SetVisible(bool isVisible);

    /** The name of the picked one; empty when there is none. */
    std::string GetPickedName() const;

private:
    const InstalledApp& GetPicked() const { return mApps[static_cast<size_t>(mPicked)]; }
    Evas_Object* Add(double x, double y, double side);
    void ShowPicked();
    void BuildRing();
    void ClearRing();
    const std::string& FindId(Evas_Object* object) const;

    static void SPickedCB(void* data);
    static void STappedCB(void* data, Evas_Object* object, const char* signal, const char* source);

    Evas* const mCanvas;
    const double mUnit;
    const TapCallback mOnTap;
    Evas_Object* const mLarge;
    std::vector<Evas_Object*> mRing; ///< of the applications from mFirst on
    std::vector<InstalledApp> mApps;
    int mPicked = 0;
    int mFirst = 0;
    bool mIsVisible = true;
    Ecore_Job* mShowing = nullptr;
};

#endif
