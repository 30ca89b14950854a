#include "common/NaviFrameItemPopHandler.h"

#include "common/Log.h"
#include "common/NaviFrame.h"

namespace QivoUi
{

NaviFrameItemPopHandler::~NaviFrameItemPopHandler()
{
    if (mNaviFrameItem)
    {
        elm_naviframe_item_pop_cb_set(mNaviFrameItem, nullptr, this);
        elm_object_item_del_cb_set(mNaviFrameItem, nullptr);
    }
}

void NaviFrameItemPopHandler::SetNaviframeItem(Elm_Object_Item* item)
{
    if (!item)
    {
        return;
    }
    mNaviFrameItem = item;
    elm_naviframe_item_pop_cb_set(item, SNaviFramePopedCB, this);
    elm_object_item_data_set(item, this);
    elm_object_item_del_cb_set(item, NaviFrameItemDelCB);
}

void NaviFrameItemPopHandler::Pop(bool animated, NaviFramePopTransitionEventListener* listener)
{
    if (mNaviFrameItem)
    {
        NaviFrame::GetInstance()->PopItem(mNaviFrameItem, animated, listener);
    }
}

void NaviFrameItemPopHandler::PopTo()
{
    if (mNaviFrameItem)
    {
        NaviFrame::GetInstance()->PopToItem(mNaviFrameItem);
    }
}

void NaviFrameItemPopHandler::DeleteItem()
{
    if (mNaviFrameItem)
    {
        NaviFrame::GetInstance()->DeleteItem(mNaviFrameItem);
        mNaviFrameItem = nullptr;
    }
}

void NaviFrameItemPopHandler::DeleteAboveNaviFrameItem()
{
    if (!mNaviFrameItem)
    {
        QIVO_LOG_ERROR("[Failed] Invalid NaviFrameItem");
        return;
    }
    NaviFrame::GetInstance()->DeleteAboveItems(mNaviFrameItem);
}

void NaviFrameItemPopHandler::DeleteBetweenNaviFrameItem(
    std::shared_ptr<NaviFrameItemPopHandler> lower)
{
    Elm_Object_Item* lowerItem = lower->mNaviFrameItem;
    if (mNaviFrameItem && lowerItem)
    {
        NaviFrame::GetInstance()->DeleteBetweenItems(mNaviFrameItem, lowerItem);
    }
}

Eina_Bool NaviFrameItemPopHandler::SNaviFramePopedCB(void* data, Elm_Object_Item* /*item*/)
{
    auto* pThis = static_cast<NaviFrameItemPopHandler*>(data);
    if (pThis->mPopEventListener && !pThis->mPopEventListener->OnViewPoped())
    {
        return EINA_FALSE;
    }
    pThis->mNaviFrameItem = nullptr;
    return EINA_TRUE;
}

void NaviFrameItemPopHandler::NaviFrameItemDelCB(void* data, Evas_Object* /*object*/,
                                                 void* eventInfo)
{
    auto* pThis = static_cast<NaviFrameItemPopHandler*>(data);
    NaviFrame::GetInstance()->OnNaviImteDeleted(static_cast<Elm_Object_Item*>(eventInfo));
    pThis->mNaviFrameItem = nullptr;
}

} // namespace QivoUi
