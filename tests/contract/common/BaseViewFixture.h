#ifndef TESTS_CONTRACT_COMMON_BASEVIEWFIXTURE_H
#define TESTS_CONTRACT_COMMON_BASEVIEWFIXTURE_H

#include "common/BaseViewEventListener.h"
#include "common/FakeView.h"
#include "common/navi-frame/NaviFrameFixture.h"
#include <memory>

/** Records what it hears as "controller.Call". */
class FakeViewListener : public QivoUi::BaseViewEventListener, public FakeListener
{
public:
    FakeViewListener() : FakeListener("controller") {}
    void OnViewBackEvent() override { Hear("OnViewBackEvent"); }
    bool OnViewPopEvent() override
    {
        Hear("OnViewPopEvent");
        return mIsAllowed;
    }
    void OnViewDeleteEvent() override { Hear("OnViewDeleteEvent"); }

    bool mIsAllowed = true;
};

/** Makes views of one record, whose layout is "content1". */
class BaseViewFixture : public NaviFrameFixture
{
protected:
    void SetUp() override
    {
        NaviFrameFixture::SetUp();
        mRecord = MakeRecord();
    }

    std::unique_ptr<FakeView> MakeView() { return std::make_unique<FakeView>(mRecord); }

    // A view whose layout "content1" is wired.
    std::unique_ptr<FakeView> MakeCreatedView()
    {
        auto view = MakeView();
        view->CreateView();
        Recorder::Take();
        return view;
    }

    Evas_Object* Content() { return mRecord->mViewLayout; }

    std::shared_ptr<QivoUi::NaviFrameItemData> mRecord;
    FakeViewListener mController;
};

#endif
