#ifndef TESTS_CONTRACT_QIVO_UI_GUIDE_TESTAPPLICATION_H
#define TESTS_CONTRACT_QIVO_UI_GUIDE_TESTAPPLICATION_H

#include "harness/Recorder.h"
#include "qivo-ui-guide/Application.h"

/** The lines of several steps, one after the other. */
inline Recorder::Lines Join(const std::vector<Recorder::Lines>& steps)
{
    Recorder::Lines lines;
    for (const Recorder::Lines& step : steps)
    {
        lines.insert(lines.end(), step.begin(), step.end());
    }
    return lines;
}

/** The base class as it is, with the one hook it leaves open; "app" in the recorded calls. */
class PlainApplication : public QivoUi::Application
{
public:
    PlainApplication() { Recorder::Name(this, "app"); }

    bool ShowView() override
    {
        Recorder::Add("ShowView()");
        return mIsViewShown;
    }

    /** What ShowView() answers. */
    bool mIsViewShown = true;
};

/** Every hook only leaves a line; "app" in the recorded calls. */
class HookedApplication : public PlainApplication
{
public:
    ~HookedApplication() override { Recorder::Add("~HookedApplication()"); }

    bool OnSetupLayout() override
    {
        Recorder::Add("OnSetupLayout()");
        return false;
    }

    void OnAppCreateImpl() override { Recorder::Add("OnAppCreateImpl()"); }
    void OnAppSystemLangChangedImpl() override { Recorder::Add("OnAppSystemLangChangedImpl()"); }
    void OnAppTerminateImpl() override { Recorder::Add("OnAppTerminateImpl()"); }
    void OnAppPauseImpl() override { Recorder::Add("OnAppPauseImpl()"); }
    void OnAppResumeImpl() override { Recorder::Add("OnAppResumeImpl()"); }
    void OnAppPausedByPowerKey() override { Recorder::Add("OnAppPausedByPowerKey()"); }

    bool AppControllOperationImpl(std::string operation, QivoUi::ExtraDataMapPtr extraData) override
    {
        Recorder::Add("AppControllOperationImpl('" + operation + "')");
        mOperationData = extraData;
        return false;
    }

    bool OnVocraOperation(QivoUi::ExtraDataMapPtr /*extraData*/) override
    {
        Recorder::Add("OnVocraOperation()");
        return false;
    }

    /** The extra data of the latest AppControllOperationImpl(). */
    QivoUi::ExtraDataMapPtr mOperationData;
};

/** Writes down what it hears as "NAME.OnAppPause()". */
class TestListener : public QivoUi::AppEventListener
{
public:
    explicit TestListener(std::string name) : mName(std::move(name)) {}

    void OnAppCreate() override { Recorder::Add(mName + ".OnAppCreate()"); }
    void OnAppTerminate() override { Recorder::Add(mName + ".OnAppTerminate()"); }
    void OnAppPause() override { Recorder::Add(mName + ".OnAppPause()"); }
    void OnAppResume() override { Recorder::Add(mName + ".OnAppResume()"); }
    void OnSystemLangChanged() override { Recorder::Add(mName + ".OnSystemLangChanged()"); }

private:
    std::string mName;
};

#endif
