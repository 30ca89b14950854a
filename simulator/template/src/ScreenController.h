#ifndef SCREENCONTROLLER_H
#define SCREENCONTROLLER_H

#include "common/BaseViewController.h"
#include <list>
#include <memory>
#include <utility>

/**
 * What all controllers have in common: who owns them.
 *
 * A controller that Open() made lives until its view's layout has been deleted, whichever way the
 * screen left the stack. It must not go earlier, nor while the deletion is under way:
 * DeInitialize() adds a job, and that releases it.
 */
class ScreenController : public QivoUi::BaseViewController
{
public:
    /** Makes a controller and shows its screen, with a transition or without. */
    template <typename Controller, typename... Arguments>
    static void Open(bool animated, Arguments&&... arguments)
    {
        auto controller = std::make_shared<Controller>(std::forward<Arguments>(arguments)...);
        sOpen.push_back(controller);
        controller->Initialize();
        controller->ShowView(animated);
    }

    /** Releases all controllers at the end, when their layouts have been deleted. */
    static void ReleaseAll();

    void DeInitialize() override;

private:
    static void SReleaseCB(void* data);

    static std::list<std::shared_ptr<ScreenController>> sOpen;
};

#endif
