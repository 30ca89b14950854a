#ifndef TESTS_CONTRACT_QIVO_UI_GUIDE_GUIDEVIEWFIXTURE_H
#define TESTS_CONTRACT_QIVO_UI_GUIDE_GUIDEVIEWFIXTURE_H

#include "common/RotaryEventManager.h"
#include "harness/Toolkit.h"
#include "qivo-ui-guide/GuideView.h"
#include <cstdio>
#include <string>

/** How the page asks for its text. */
constexpr const char* kDgettext =
    "dgettext('qivo-guide-app', 'MIDS_QIVOG_BODY_PRESS_N_HOLD_BACK_KEY_ON_ANY_SCREEN_ABB')";

/** A guide view, "view", whose text is "Press and hold" the first time that it asks for it. */
class GuideViewFixture : public ToolkitTest
{
protected:
    void SetUp() override
    {
        ToolkitTest::SetUp();
        Recorder::Name(&mView, "view");
        Recorder::Name(QivoUi::RotaryEventManager::GetInstance(), "manager");
        Translate("Press and hold");
    }

    /** The next translation of the help text. */
    static void Translate(const char* text)
    {
        Recorder::Answer("dgettext", reinterpret_cast<std::intptr_t>(text));
    }

    /** An address as a log line shows it. */
    static std::string Address(const void* object)
    {
        char text[32];
        std::snprintf(text, sizeof(text), "%p", object);
        return text;
    }

    QivoUi::GuideView mView;
};

#endif
