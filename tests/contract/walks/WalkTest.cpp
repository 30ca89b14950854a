#include "common/AppEventListener.h"
#include "common/navi-frame/NaviFrameFixture.h"
#include "common/rotary/RotaryFixture.h"
#include "harness/PlatformState.h"
#include "qivo-ui-guide/GuideApplication.h"
#include "walks/Model.h"
#include "walks/Walks.h"
#include <algorithm>
#include <cstdlib>

using QivoUi::NaviFrame;
using QivoUi::NaviFrameItemPopHandler;
using QivoUi::RotaryEventManager;

namespace
{

class Screen : public QivoUi::NaviFrameStateListener,
               public QivoUi::NaviFramePopEventListener,
               public QivoUi::NaviFramePopTransitionEventListener
{
public:
    explicit Screen(std::size_t number) : mName("screen" + std::to_string(number)) {}
    void OnItemResume() override { Recorder::Add(mName + ".OnItemResume"); }
    void OnItemPause() override { Recorder::Add(mName + ".OnItemPause"); }
    void OnItemTransitionFinished() override { Recorder::Add(mName + ".OnItemTransitionFinished"); }
    void OnPopTransitionFinished() override { Recorder::Add(mName + ".OnPopTransitionFinished"); }
    bool OnViewPoped() override
    {
        Recorder::Add(mName + ".OnViewPoped");
        return !mRefuses;
    }

    std::shared_ptr<NaviFrameItemPopHandler> mHandle;
    bool mRefuses = false;

private:
    std::string mName;
};

class AppListener : public QivoUi::AppEventListener
{
public:
    explicit AppListener(std::string name) : mName(std::move(name)) {}
    void OnAppPause() override { Recorder::Add(mName + ".OnAppPause"); }
    void OnAppResume() override { Recorder::Add(mName + ".OnAppResume"); }

private:
    std::string mName;
};

// The framework itself, driven by steps. The toolkit is the real one; its transitions end by hand.
class Framework
{
public:
    explicit Framework(Evas_Object* window) : mWindow(window)
    {
        Recorder::Reset();
        Platform::Reset();
        mLayout = elm_layout_add(window);
        mFrame = NaviFrame::GetInstance();
        mFrame->SetMainWindow(window);
        mFrame->CreateNaviFrame(mLayout);
        mApp.RegisterAppEventListener(mFrame);
        for (int i = 0; i < Model::kObjects; ++i)
        {
            MakeObject(i);
        }
        Recorder::Take();
    }

    // The handles outlive their items, as they are to while a pop is under way.
    ~Framework()
    {
        evas_object_del(mLayout);
        for (Evas_Object* object : mObjects)
        {
            evas_object_del(object);
        }
        RotaryEventManager::Destroy();
        NaviFrame::Destroy();
        // Lets the canvas forget what was deleted.
        evas_norender(evas_object_evas_get(mWindow));
    }

    Lines Take(const Step& step)
    {
        if (step.kind <= Kind::RefusePops)
        {
            TakeOnScreen(step);
        }
        else if (step.kind <= Kind::UnregisterApp)
        {
            TakeOnApplication(step);
        }
        else
        {
            TakeOnBezel(step);
        }
        return Heard();
    }

    std::vector<int> Stack()
    {
        std::vector<int> numbers;
        Eina_List* items = elm_naviframe_items_get(mFrame->mNaviFrame);
        for (Eina_List* node = items; node; node = eina_list_next(node))
        {
            const auto item = std::find(mItems.begin(), mItems.end(), eina_list_data_get(node));
            numbers.push_back(static_cast<int>(item - mItems.begin()));
        }
        eina_list_free(items);
        Recorder::Take();
        return numbers;
    }

    std::vector<int> Records()
    {
        std::vector<int> numbers;
        for (const auto& record : RotaryEventManager::GetInstance()->mRotaryEventDataList)
        {
            const auto object =
                std::find(mObjects, mObjects + Model::kObjects, record->mViewObject);
            numbers.push_back(static_cast<int>(object - mObjects));
        }
        return numbers;
    }

private:
    // Log lines and what listeners heard, with names for addresses.
    static Lines Heard()
    {
        Lines lines;
        for (const std::string& line : Recorder::Take())
        {
            const bool isCall = line.compare(0, 4, "elm_") == 0 ||
                                line.compare(0, 5, "evas_") == 0 ||
                                line.compare(0, 5, "eext_") == 0 ||
                                line.compare(0, 5, "eina_") == 0 || line == "detent passed on";
            if (!isCall)
            {
                lines.push_back(Recorder::WithNames(line));
            }
        }
        return lines;
    }

    void MakeObject(int i)
    {
        mObjects[i] = evas_object_rectangle_add(evas_object_evas_get(mWindow));
        Recorder::Name(mObjects[i], "object" + std::to_string(i));
        mRotary[i] = std::make_unique<FakeRotaryListener>("bezel" + std::to_string(i), mObjects[i]);
    }

    void Push(bool animated, const Step& step)
    {
        mScreens.push_back(std::make_unique<Screen>(mScreens.size()));
        Screen& screen = *mScreens.back();
        auto record = std::make_shared<QivoUi::NaviFrameItemData>();
        record->mViewLayout = evas_object_rectangle_add(evas_object_evas_get(mWindow));
        record->mTitle = step.first % 8 == 0 ? "Title" : "";
        record->mStateListener = step.second % 4 != 0 ? &screen : nullptr;
        screen.mHandle = mFrame->PushNaviframeItem(record, animated);
        screen.mHandle->mPopEventListener = &screen;
        mItems.push_back(screen.mHandle->mNaviFrameItem);
        Recorder::Name(mItems.back(), "item" + std::to_string(mItems.size() - 1));
    }

    void TakeOnScreen(const Step& step)
    {
        if (step.kind <= Kind::PushInserted)
        {
            Push(step.kind == Kind::PushAnimated, step);
        }
        else if (step.kind == Kind::PopTop)
        {
            mFrame->PopTopItem();
        }
        else if (step.kind == Kind::DeleteTop)
        {
            mFrame->DeleteTopItem();
        }
        else if (!mScreens.empty() && mScreens[step.first % mScreens.size()]->mHandle)
        {
            TakeOnHandle(step, *mScreens[step.first % mScreens.size()],
                         *mScreens[step.second % mScreens.size()]);
        }
    }

    void TakeOnHandle(const Step& step, Screen& screen, Screen& other)
    {
        switch (step.kind)
        {
        case Kind::PopAnimated:
        case Kind::PopAtOnce:
            screen.mHandle->Pop(step.kind == Kind::PopAnimated,
                                step.second % 3 == 0 ? nullptr : &screen);
            break;
        case Kind::PopTo:
            screen.mHandle->PopTo();
            break;
        case Kind::DeleteItem:
            screen.mHandle->DeleteItem();
            break;
        case Kind::DeleteAbove:
            screen.mHandle->DeleteAboveNaviFrameItem();
            break;
        case Kind::DeleteBetween:
            // The other way round is left to the user not to do.
            if (other.mHandle && step.first % mScreens.size() > step.second % mScreens.size())
            {
                screen.mHandle->DeleteBetweenNaviFrameItem(other.mHandle);
            }
            break;
        case Kind::ReleaseHandle:
            // Not while a pop that it consented to is under way.
            if (screen.mHandle->mNaviFrameItem)
            {
                screen.mHandle.reset();
            }
            break;
        default:
            screen.mRefuses = !screen.mRefuses;
        }
    }

    void TakeOnApplication(const Step& step)
    {
        QivoUi::AppEventListener* const listeners[] = {mFrame, &mFirst, &mSecond};
        QivoUi::AppEventListener* listener = listeners[step.first % 3];
        switch (step.kind)
        {
        case Kind::EndTransition:
            evas_object_smart_callback_call(mFrame->mNaviFrame, "transition,finished", nullptr);
            break;
        case Kind::Pause:
            mApp.NotifyAppPaused();
            break;
        case Kind::Resume:
            mApp.NotifyAppResumed();
            break;
        case Kind::RegisterApp:
            mApp.RegisterAppEventListener(listener);
            break;
        default:
            mApp.UnRegisterAppEventListener(listener);
        }
    }

    void TakeOnBezel(const Step& step)
    {
        RotaryEventManager* manager = RotaryEventManager::GetInstance();
        const int i = static_cast<int>(step.first % Model::kObjects);
        switch (step.kind)
        {
        case Kind::RegisterRotary:
            manager->RegisterEventListener(mRotary[i].get());
            break;
        case Kind::UnregisterRotary:
            manager->UnRegisterEventListener(mRotary[i].get());
            break;
        case Kind::ActivateWidget:
            manager->ActivateRotateElementaryWidget(mObjects[i]);
            break;
        case Kind::DeactivateWidget:
            manager->DeActivateRotateElementaryWidget(mObjects[i]);
            break;
        case Kind::DeleteObject:
            evas_object_del(mObjects[i]);
            MakeObject(i);
            break;
        default:
            Platform::TurnBezel(mObjects[i],
                                static_cast<Eext_Rotary_Event_Direction>(step.second % 2), 7);
        }
    }

    Evas_Object* mWindow;
    Evas_Object* mLayout;
    NaviFrame* mFrame;
    std::vector<std::unique_ptr<Screen>> mScreens;
    std::vector<Elm_Object_Item*> mItems;
    QivoUi::GuideApplication mApp;
    AppListener mFirst{"app1"};
    AppListener mSecond{"app2"};
    Evas_Object* mObjects[Model::kObjects] = {};
    std::unique_ptr<FakeRotaryListener> mRotary[Model::kObjects];
};

// The first difference between the framework and the model; empty when there is none.
std::string Walk(Evas_Object* window, const Steps& steps)
{
    Framework framework(window);
    Model model;
    for (std::size_t i = 0; i < steps.size(); ++i)
    {
        const Lines expected = model.Take(steps[i]);
        const Lines actual = framework.Take(steps[i]);
        std::vector<int> records;
        for (const Model::Record& record : model.mRecords)
        {
            records.push_back(record.object);
        }
        if (actual != expected || framework.Stack() != model.mStack ||
            framework.Records() != records)
        {
            return "step " + std::to_string(i + 1) + " brought " + testing::PrintToString(actual) +
                   " and not " + testing::PrintToString(expected) + ", stack " +
                   testing::PrintToString(framework.Stack()) + " and not " +
                   testing::PrintToString(model.mStack) + ", bezel " +
                   testing::PrintToString(framework.Records()) + " and not " +
                   testing::PrintToString(records);
        }
    }
    return "";
}

std::string WalkOrThrow(Evas_Object* window, const Steps& steps)
{
    try
    {
        return Walk(window, steps);
    }
    catch (const std::exception& thrown)
    {
        return std::string("throws ") + thrown.what();
    }
}

unsigned FromEnvironment(const char* name, unsigned otherwise)
{
    const char* value = std::getenv(name);
    return value ? static_cast<unsigned>(std::strtoul(value, nullptr, 10)) : otherwise;
}

class WalkTest : public ToolkitTest
{
};

TEST_F(WalkTest, EveryWalkIsAsTheModelSays)
{
    const auto fails = [this](const Steps& walk) { return WalkOrThrow(mWindow, walk); };
    const std::string fault =
        Walks::Fail(fails, FromEnvironment("WALK_SEED", 1), FromEnvironment("WALKS", WALKS));
    EXPECT_TRUE(fault.empty()) << fault;
}

} // namespace
