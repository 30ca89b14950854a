#include "common/BaseView.h"

#include "common/Log.h"
#include "common/NaviFrame.h"
#include <efl_extension.h>

namespace QivoUi
{

namespace
{

constexpr const char* kLanguageChanged = "language,changed";

} // namespace

BaseView::~BaseView()
{
    if (mLayout)
    {
        // The back-key callback deliberately stays; it goes with the layout.
        evas_object_smart_callback_del(mLayout, kLanguageChanged, SLanguageChangedCB);
        evas_object_event_callback_del(mLayout, EVAS_CALLBACK_DEL, SViewObjectDeleteCB);
        mLayout = nullptr;
    }
}

void BaseView::CreateView()
{
    Evas_Object* parent = NaviFrame::GetInstance()->GetParent();
    if (!parent)
    {
        QIVO_LOG_ERROR("[Failed] Invalid parent");
        return;
    }
    mNaviFramItemDataPtr = CreateViewImpl(parent);
    if (!mNaviFramItemDataPtr)
    {
        return;
    }
    mLayout = mNaviFramItemDataPtr->mViewLayout;
    if (!mLayout)
    {
        return;
    }
    eext_object_event_callback_add(mLayout, EEXT_CALLBACK_BACK, SLayoutBackCB, this);
    evas_object_event_callback_add(mLayout, EVAS_CALLBACK_DEL, SViewObjectDeleteCB, this);
    evas_object_smart_callback_add(mLayout, kLanguageChanged, SLanguageChangedCB, this);
}

std::shared_ptr<NaviFrameItemPopHandler> BaseView::Show(bool animated)
{
    std::shared_ptr<NaviFrameItemPopHandler> popHandler;
    if (!mNaviFramItemDataPtr)
    {
        QIVO_LOG_ERROR("[Failed] Invalid NaviFrameItemDataPtr");
        return popHandler;
    }
    popHandler = NaviFrame::GetInstance()->PushNaviframeItem(mNaviFramItemDataPtr, animated);
    if (popHandler)
    {
        popHandler->mPopEventListener = this;
    }
    return popHandler;
}

Evas_Object* BaseView::GetViewLayout()
{
    if (!mNaviFramItemDataPtr)
    {
        QIVO_LOG_WARN("mNaviFramItemDataPtr is NULL");
        return nullptr;
    }
    return mNaviFramItemDataPtr->mViewLayout;
}

bool BaseView::OnViewPoped()
{
    if (!mViewEventListener)
    {
        QIVO_LOG_WARN("mViewEventListener is NULL");
        return true;
    }
    return mViewEventListener->OnViewPopEvent();
}

void BaseView::OnLayoutDeleted()
{
    if (!mViewEventListener)
    {
        QIVO_LOG_WARN("mViewEventListener is NULL");
        return;
    }
    mViewEventListener->OnViewDeleteEvent();
    // Deliberate: with a controller the language callback is left to go with the layout.
    mLayout = nullptr;
}

void BaseView::SLayoutBackCB(void* data, Evas_Object* /*object*/, void* /*eventInfo*/)
{
    QIVO_LOG_MARK();
    auto* pThis = static_cast<BaseView*>(data);
    if (!pThis->mViewEventListener)
    {
        QIVO_LOG_WARN("mViewEventListener is NULL");
        return;
    }
    pThis->mViewEventListener->OnViewBackEvent();
}

void BaseView::SViewObjectDeleteCB(void* data, Evas* /*canvas*/, Evas_Object* /*object*/,
                                   void* /*eventInfo*/)
{
    auto* pThis = static_cast<BaseView*>(data);
    pThis->OnLayoutDeleted();
    if (pThis->mLayout)
    {
        evas_object_smart_callback_del(pThis->mLayout, kLanguageChanged, SLanguageChangedCB);
    }
    pThis->mLayout = nullptr;
}

void BaseView::SLanguageChangedCB(void* data, Evas_Object* /*object*/, void* /*eventInfo*/)
{
    static_cast<BaseView*>(data)->OnLanguageChanged();
}

void BaseView::SThemeChangedCB(void* data)
{
    auto* pThis = static_cast<BaseView*>(data);
    if (!pThis)
    {
        QIVO_LOG_ERROR("pThis is NULL");
        return;
    }
    pThis->OnThemeChanged();
}

} // namespace QivoUi
