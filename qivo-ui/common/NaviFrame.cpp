#include "common/NaviFrame.h"

#include "common/Log.h"
#include "common/NaviFrameItemPopHandler.h"
#include "common/RuntimeError.h"

namespace QivoUi
{

namespace
{

constexpr const char* kTransitionFinished = "transition,finished";

} // namespace

NaviFrame* NaviFrame::mInstance = nullptr;
bool NaviFrame::mIsAlive = false;

NaviFrame::NaviFrame()
{
    mIsAlive = true;
}

NaviFrame::~NaviFrame()
{
    if (mNaviFrame)
    {
        evas_object_smart_callback_del(mNaviFrame, kTransitionFinished,
                                       SNaviFrameTransitionFinishedCB);
    }
    mNaviFrame = nullptr;
    mIsAlive = false;
    mStateListenerMap.clear();
}

NaviFrame* NaviFrame::GetInstance()
{
    if (!mInstance)
    {
        mInstance = new NaviFrame();
    }
    return mInstance;
}

void NaviFrame::Destroy()
{
    if (mInstance)
    {
        delete mInstance;
        mInstance = nullptr;
    }
}

void NaviFrame::SetMainWindow(Evas_Object* window)
{
    mWindow = window;
}

void NaviFrame::CreateNaviFrame(Evas_Object* layout)
{
    if (!layout)
    {
        QIVO_LOG_ERROR("[Failed] Invalid layout");
        return;
    }
    mNaviFrame = elm_naviframe_add(layout);
    if (!mNaviFrame)
    {
        QIVO_LOG_ERROR("[Failed] Create NaviFrame");
        return;
    }
    elm_object_part_content_set(layout, "elm.swallow.content", mNaviFrame);
}

Evas_Object* NaviFrame::GetParent()
{
    return mNaviFrame;
}

NaviFrameStateListener* NaviFrame::FindStateListener(Elm_Object_Item* item) const
{
    const auto entry = mStateListenerMap.find(item);
    return entry == mStateListenerMap.end() ? nullptr : entry->second;
}

NaviFrameStateListener* NaviFrame::FindTopListener() const
{
    return FindStateListener(elm_naviframe_top_item_get(mNaviFrame));
}

std::shared_ptr<NaviFrameItemPopHandler>
NaviFrame::PushNaviframeItem(std::shared_ptr<NaviFrameItemData> data, bool animated)
{
    std::shared_ptr<NaviFrameItemPopHandler> popHandler;
    if (!mNaviFrame)
    {
        QIVO_LOG_ERROR("[Failed] Invalid Naviframe item");
        return popHandler;
    }

    const std::string title = data->mTitle;
    const std::string style = title.empty() ? "empty" : "";
    Elm_Object_Item* oldTop = elm_naviframe_top_item_get(mNaviFrame);
    Elm_Object_Item* newTop = nullptr;
    if (!oldTop || animated)
    {
        newTop = elm_naviframe_item_push(mNaviFrame, title.c_str(), nullptr, nullptr,
                                         data->mViewLayout, style.c_str());
        if (oldTop)
        {
            // Deliberately before the new item is tested.
            QIVO_LOG_INFO("push animationStart");
            evas_object_smart_callback_add(mNaviFrame, kTransitionFinished,
                                           SNaviFrameTransitionFinishedCB, this);
        }
    }
    else
    {
        // Deliberately asked and unused; the sequence of toolkit calls is kept.
        static_cast<void>(elm_naviframe_bottom_item_get(mNaviFrame));
        newTop = elm_naviframe_item_insert_after(mNaviFrame, oldTop, title.c_str(), nullptr,
                                                 nullptr, data->mViewLayout, style.c_str());
    }
    if (!newTop)
    {
        QIVO_LOG_ERROR("naviFrameItem is NULL");
        return popHandler;
    }

    NaviFrameStateListener* oldListener = FindStateListener(oldTop);
    if (oldListener && !mIsPaused)
    {
        oldListener->OnItemPause();
    }
    if (data->mStateListener)
    {
        data->mStateListener->OnItemResume();
        mStateListenerMap[newTop] = data->mStateListener;
    }
    popHandler = std::make_shared<NaviFrameItemPopHandler>();
    popHandler->SetNaviframeItem(newTop);
    return popHandler;
}

void NaviFrame::PopItem(Elm_Object_Item* item, bool animated,
                        NaviFramePopTransitionEventListener* listener)
{
    try
    {
        if (!mNaviFrame)
        {
            ThrowRuntimeError(__func__, "mNaviFrame is NULL");
        }
        Elm_Object_Item* top = elm_naviframe_top_item_get(mNaviFrame);
        if (top != item)
        {
            ThrowRuntimeError(__func__, "naviFrameItem doesn't top item");
        }
        if (top != elm_naviframe_bottom_item_get(mNaviFrame))
        {
            if (!animated)
            {
                elm_object_item_del(top);
                return;
            }
            mPopTransitionEventListener = listener;
            evas_object_smart_callback_add(mNaviFrame, kTransitionFinished,
                                           SNaviFramePopTransitionFinishedCB, this);
            elm_naviframe_item_pop(mNaviFrame);
            QIVO_LOG_INFO("pop animation start");
            return;
        }

        if (!mWindow)
        {
            ThrowRuntimeError(__func__, "mWindow is NULL");
        }
        elm_win_lower(mWindow);
        if (!mNaviFrmaeLowerEventListener)
        {
            QIVO_LOG_WARN("mNaviFrmaeLowerEventListener is NULL");
            return;
        }
        mNaviFrmaeLowerEventListener->OnNaviFrameLowered();
    }
    catch (const std::exception& failure)
    {
        QIVO_LOG_ERROR("pop fail[%s]", failure.what());
    }
}

void NaviFrame::PopToItem(Elm_Object_Item* item)
{
    if (!mNaviFrame || !item)
    {
        QIVO_LOG_ERROR("[Failed] Invalid Naviframe : %p naviframeItem : %p",
                       static_cast<void*>(mNaviFrame), static_cast<void*>(item));
        return;
    }
    if (item == elm_naviframe_top_item_get(mNaviFrame))
    {
        return;
    }
    elm_naviframe_item_pop_to(item);
    QIVO_LOG_INFO("pop to animation start");
}

void NaviFrame::PopTopItem()
{
    if (!mNaviFrame)
    {
        QIVO_LOG_ERROR("[Failed] Pop Naviframe item");
        return;
    }
    elm_naviframe_item_pop(mNaviFrame);
    QIVO_LOG_INFO("Pop Start");
}

void NaviFrame::DeleteItem(Elm_Object_Item* item)
{
    if (item)
    {
        elm_object_item_del(item);
    }
}

void NaviFrame::DeleteTopItem()
{
    Elm_Object_Item* top = elm_naviframe_top_item_get(mNaviFrame);
    if (top)
    {
        elm_object_item_del(top);
    }
}

void NaviFrame::DeleteAboveItems(Elm_Object_Item* item)
{
    if (!mNaviFrame)
    {
        QIVO_LOG_ERROR("[Faild] Invalid naviFrameItem");
        return;
    }
    Eina_List* items = elm_naviframe_items_get(mNaviFrame);
    if (!items)
    {
        QIVO_LOG_ERROR("navifrmaeItem List is Null");
        return;
    }
    Eina_List* node = eina_list_data_find_list(items, item);
    if (!node)
    {
        eina_list_free(items);
        return;
    }

    // The loop stands again below: each line is to name the operation it was logged from.
    Eina_List* above = nullptr;
    Eina_List* below = eina_list_split_list(items, node, &above);
    for (Eina_List* it = above; it; it = eina_list_next(it))
    {
        auto* deleted = static_cast<Elm_Object_Item*>(eina_list_data_get(it));
        if (deleted)
        {
            QIVO_LOG_ERROR("Delete naviframeItem %p", static_cast<void*>(deleted));
            elm_object_item_del(deleted);
        }
    }
    eina_list_free(above);
    eina_list_free(below);
}

void NaviFrame::DeleteBetweenItems(Elm_Object_Item* upper, Elm_Object_Item* lower)
{
    if (!mNaviFrame)
    {
        QIVO_LOG_ERROR("[Faild] Invalid naviFrameItem");
        return;
    }
    Eina_List* items = elm_naviframe_items_get(mNaviFrame);
    if (!items)
    {
        QIVO_LOG_ERROR("navifrmaeItem List is Null");
        return;
    }
    Eina_List* upperNode = eina_list_data_find_list(items, upper);
    Eina_List* lowerNode = eina_list_data_find_list(items, lower);
    if (!upperNode || !lowerNode)
    {
        QIVO_LOG_ERROR("Invalid Delete Range");
        eina_list_free(items);
        return;
    }
    Eina_List* between = GetBetweenList(items, upperNode, lowerNode);
    if (!between)
    {
        QIVO_LOG_ERROR("Invalid deletedList");
        return;
    }

    for (Eina_List* it = between; it; it = eina_list_next(it))
    {
        auto* deleted = static_cast<Elm_Object_Item*>(eina_list_data_get(it));
        if (deleted)
        {
            QIVO_LOG_ERROR("Delete naviframeItem %p", static_cast<void*>(deleted));
            elm_object_item_del(deleted);
        }
    }
    eina_list_free(between);
}

Eina_List* NaviFrame::GetBetweenList(Eina_List* list, Eina_List* upperNode, Eina_List* lowerNode)
{
    Eina_List* aboveLower = nullptr;
    eina_list_free(eina_list_split_list(list, lowerNode, &aboveLower));
    if (!aboveLower)
    {
        return nullptr;
    }
    // Null when the two are neighbours: the split then leaves nothing between them.
    Eina_List* lastBetween = eina_list_prev(upperNode);
    Eina_List* fromUpper = nullptr;
    Eina_List* between = eina_list_split_list(aboveLower, lastBetween, &fromUpper);
    eina_list_free(fromUpper);
    return between;
}

bool NaviFrame::IsNaviFrameEmpty()
{
    return elm_naviframe_top_item_get(mNaviFrame) == nullptr;
}

void NaviFrame::TriggerToAppPaused()
{
    if (!mWindow)
    {
        QIVO_LOG_ERROR("Invalid Window");
        return;
    }
    elm_win_lower(mWindow);
}

void NaviFrame::OnAppPause()
{
    mIsPaused = true;
    NaviFrameStateListener* listener = FindTopListener();
    if (listener)
    {
        listener->OnItemPause();
    }
}

void NaviFrame::OnAppResume()
{
    mIsPaused = false;
    NaviFrameStateListener* listener = FindTopListener();
    if (listener)
    {
        listener->OnItemResume();
    }
}

void NaviFrame::OnNaviImteDeleted(Elm_Object_Item* item)
{
    if (!mIsAlive)
    {
        QIVO_LOG_WARN("mIsAlive is false");
        return;
    }
    if (!item)
    {
        return;
    }
    if (!mIsPaused)
    {
        Elm_Object_Item* top = elm_naviframe_top_item_get(mNaviFrame);
        NaviFrameStateListener* listener = top ? FindStateListener(top) : nullptr;
        if (listener)
        {
            listener->OnItemResume();
        }
    }
    mStateListenerMap.erase(item);
}

void NaviFrame::SNaviFrameTransitionFinishedCB(void* data, Evas_Object* /*object*/,
                                               void* /*eventInfo*/)
{
    auto* pThis = static_cast<NaviFrame*>(data);
    if (!pThis)
    {
        QIVO_LOG_ERROR("pThis is NULL");
        return;
    }
    QIVO_LOG_INFO("Animation Done");
    NaviFrameStateListener* listener = pThis->FindTopListener();
    if (listener)
    {
        listener->OnItemTransitionFinished();
    }
    evas_object_smart_callback_del(pThis->mNaviFrame, kTransitionFinished,
                                   SNaviFrameTransitionFinishedCB);
}

void NaviFrame::SNaviFramePopTransitionFinishedCB(void* data, Evas_Object* /*object*/,
                                                  void* /*eventInfo*/)
{
    auto* pThis = static_cast<NaviFrame*>(data);
    evas_object_smart_callback_del(pThis->mNaviFrame, kTransitionFinished,
                                   SNaviFramePopTransitionFinishedCB);
    if (pThis->mPopTransitionEventListener)
    {
        pThis->mPopTransitionEventListener->OnPopTransitionFinished();
        pThis->mPopTransitionEventListener = nullptr;
    }
}

} // namespace QivoUi
