#include "common/BaseViewController.h"

#include "common/Log.h"

namespace QivoUi
{

std::shared_ptr<NaviFrameItemPopHandler> BaseViewController::ShowView(bool animated)
{
    if (!mBaseViewPtr)
    {
        QIVO_LOG_ERROR("mBaseViewPtr is NULL");
        return mPopHandlerPtr;
    }
    mBaseViewPtr->mViewEventListener = this;
    mPopHandlerPtr = mBaseViewPtr->Show(animated);
    if (!mPopHandlerPtr)
    {
        QIVO_LOG_ERROR("[Failed] Get Pop Handler");
    }
    return mPopHandlerPtr;
}

void BaseViewController::OnViewBackEvent()
{
    if (mPopHandlerPtr)
    {
        mPopHandlerPtr->Pop(true, nullptr);
    }
}

bool BaseViewController::OnViewPopEvent()
{
    return true;
}

void BaseViewController::OnViewDeleteEvent()
{
    DeInitialize();
}

} // namespace QivoUi
