#ifndef TESTS_CONTRACT_COMMON_NAVIFRAMEFIXTURE_H
#define TESTS_CONTRACT_COMMON_NAVIFRAMEFIXTURE_H

#include "common/FakeListeners.h"
#include "common/NaviFrame.h"
#include "common/NaviFrameItemPopHandler.h"
#include "harness/Toolkit.h"
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

/** A navigation frame with its widget, "frame" and "naviframe1", in the layout "layout1". */
class NaviFrameFixture : public ToolkitTest
{
protected:
    void SetUp() override
    {
        ToolkitTest::SetUp();
        mLayout = elm_layout_add(mWindow);
        elm_layout_theme_set(mLayout, "layout", "application", "default");
        evas_object_resize(mLayout, 360, 360);
        evas_object_show(mLayout);
        mFrame = QivoUi::NaviFrame::GetInstance();
        mFrame->SetMainWindow(mWindow);
        mFrame->CreateNaviFrame(mLayout);
        Recorder::Name(mFrame, "frame");
        Recorder::Take();
    }

    /** The record of a screen whose content is "content1", the next "content2". */
    std::shared_ptr<QivoUi::NaviFrameItemData>
    MakeRecord(QivoUi::NaviFrameStateListener* listener = nullptr)
    {
        auto record = std::make_shared<QivoUi::NaviFrameItemData>();
        record->mViewLayout = elm_grid_add(mWindow);
        Recorder::Name(record->mViewLayout, "content" + std::to_string(++mContents));
        record->mStateListener = listener;
        return record;
    }

    /** Pushes a screen without animation; the item is "item1", the next "item2". */
    Elm_Object_Item* Push(QivoUi::NaviFrameStateListener* listener = nullptr)
    {
        PushRecord(MakeRecord(listener), false);
        Recorder::Name(mHandles.back().get(), "handle" + std::to_string(mHandles.size()));
        return mHandles.back()->mNaviFrameItem;
    }

    /** Pushes a screen without animation and gives its handle, "handle1", then "handle2". */
    std::shared_ptr<QivoUi::NaviFrameItemPopHandler>
    PushHandle(QivoUi::NaviFrameStateListener* listener = nullptr)
    {
        Push(listener);
        return mHandles.back();
    }

    /** Pushes a screen of the given record and keeps its handle. */
    std::shared_ptr<QivoUi::NaviFrameItemPopHandler>
    PushRecord(const std::shared_ptr<QivoUi::NaviFrameItemData>& record, bool animated)
    {
        mHandles.push_back(mFrame->PushNaviframeItem(record, animated));
        return mHandles.back();
    }

    std::shared_ptr<QivoUi::NaviFrameItemPopHandler>
    PushAnimated(QivoUi::NaviFrameStateListener* listener = nullptr)
    {
        return PushRecord(MakeRecord(listener), true);
    }

    /** The stack from the bottom to the top, by name. */
    Lines Stack()
    {
        Lines names;
        Eina_List* items = elm_naviframe_items_get(mFrame->mNaviFrame);
        for (Eina_List* node = items; node; node = eina_list_next(node))
        {
            names.push_back(Recorder::NameOf(eina_list_data_get(node)));
        }
        eina_list_free(items);
        Recorder::Take();
        return names;
    }

    /** Gives the widget's word that a transition has ended. */
    void EndTransition()
    {
        evas_object_smart_callback_call(mFrame->mNaviFrame, "transition,finished", nullptr);
    }

    /** Runs the main loop until a line is recorded; the lines up to it, it included. */
    Lines TakeUntil(const std::string& line)
    {
        Lines lines;
        const auto hasCome = [&]
        {
            const Lines more = Recorder::Take();
            lines.insert(lines.end(), more.begin(), more.end());
            return std::count(lines.begin(), lines.end(), line) > 0;
        };
        EXPECT_TRUE(Toolkit::RunUntil(hasCome)) << line;
        return lines;
    }

    /** An address as a log line shows it. */
    static std::string Address(const void* object)
    {
        char text[32];
        std::snprintf(text, sizeof(text), "%p", object);
        return text;
    }

    Evas_Object* mLayout = nullptr;
    QivoUi::NaviFrame* mFrame = nullptr;
    std::vector<std::shared_ptr<QivoUi::NaviFrameItemPopHandler>> mHandles;

private:
    int mContents = 0;
};

#endif
