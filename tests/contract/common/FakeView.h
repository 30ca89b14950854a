#ifndef TESTS_CONTRACT_COMMON_FAKEVIEW_H
#define TESTS_CONTRACT_COMMON_FAKEVIEW_H

#include "common/BaseView.h"
#include "harness/Recorder.h"
#include <functional>
#include <memory>

/** A view that gives the record it was made with and records what it hears as "view.Call". */
class FakeView : public QivoUi::BaseView
{
public:
    explicit FakeView(std::shared_ptr<QivoUi::NaviFrameItemData> record)
        : mRecord(std::move(record))
    {
        Recorder::Name(this, "view");
    }

    std::shared_ptr<QivoUi::NaviFrameItemData> CreateViewImpl(Evas_Object* parent) override
    {
        const Allocations::Pause pause;
        Recorder::Add("view.CreateViewImpl(" + Recorder::NameOf(parent) + ")");
        return mRecord;
    }

    void OnLanguageChanged() override { Recorder::Add("view.OnLanguageChanged"); }

    void OnThemeChanged() override { Recorder::Add("view.OnThemeChanged"); }

    /** What the view's builder gives. */
    std::shared_ptr<QivoUi::NaviFrameItemData> mRecord;
};

#endif
