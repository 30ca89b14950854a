#ifndef TESTS_CONTRACT_FAULTS_FRAMESTAGE_H
#define TESTS_CONTRACT_FAULTS_FRAMESTAGE_H

#include "common/BaseViewController.h"
#include "common/BaseViewFixture.h"
#include "common/rotary/RotaryFixture.h"
#include "faults/scenes/Stage.h"
#include <utility>

/** Everything that an operation of the framework can need, with the navigation frame's widget. */
class FrameCast : public NaviFrameFixture
{
public:
    void TestBody() override {}
    using NaviFrameFixture::EndTransition;
    using NaviFrameFixture::MakeRecord;
    using NaviFrameFixture::mFrame;
    using NaviFrameFixture::mHandles;
    using NaviFrameFixture::mLayout;
    using NaviFrameFixture::mWindow;
    using NaviFrameFixture::Push;
    using NaviFrameFixture::PushAnimated;
    using NaviFrameFixture::PushHandle;
    using NaviFrameFixture::PushRecord;
    using NaviFrameFixture::SetUp;
    using NaviFrameFixture::Stack;
    using NaviFrameFixture::TearDown;

    Evas_Object* AddObject(const std::string& name)
    {
        Evas_Object* object = evas_object_rectangle_add(evas_object_evas_get(mWindow));
        Recorder::Name(object, name);
        return object;
    }

    FakeStateListener mBelow{"below"};
    FakeStateListener mTop{"top"};
    FakePopListener mPop;
    FakeTransitionListener mTransition;
    FakeLowerListener mLower;
    FakeViewListener mController;
    std::shared_ptr<QivoUi::NaviFrameItemData> mRecord;
    std::unique_ptr<FakeView> mView;
    QivoUi::RotaryEventManager* mManager = nullptr;
    std::vector<std::unique_ptr<FakeRotaryListener>> mRotaryListeners;
    std::vector<Evas_Object*> mObjects;
};

/** A stage from what is given and what is done. */
class FrameStage : public Stage
{
public:
    using Step = std::function<void(FrameCast&)>;

    FrameStage(Step given, Step when) : mGiven(std::move(given)), mWhen(std::move(when)) {}

    void Set() override
    {
        mCast.SetUp();
        mCast.mManager = QivoUi::RotaryEventManager::GetInstance();
        Recorder::Name(mCast.mManager, "manager");
        if (mGiven)
        {
            mGiven(mCast);
        }
    }

    void Play() override { mWhen(mCast); }

    std::string State() override
    {
        std::string state = "then the stack is";
        if (!mCast.mFrame || mCast.mFrame != QivoUi::NaviFrame::mInstance ||
            !mCast.mFrame->mNaviFrame)
        {
            return "then there is no frame";
        }
        for (const std::string& item : mCast.Stack())
        {
            state += " " + item;
        }
        return state;
    }

    void Clear() override { mCast.TearDown(); }

private:
    FrameCast mCast;
    Step mGiven;
    Step mWhen;
};

inline Scene FrameScene(const std::string& name, const FrameStage::Step& given,
                        const FrameStage::Step& when)
{
    return {name, [given, when] { return std::make_unique<FrameStage>(given, when); }};
}

#endif
