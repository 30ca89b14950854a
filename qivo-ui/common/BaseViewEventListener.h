#ifndef QIVO_UI_COMMON_BASEVIEWEVENTLISTENER_H
#define QIVO_UI_COMMON_BASEVIEWEVENTLISTENER_H

namespace QivoUi
{

/**
 * What a view reports to whoever decides for it, in practice its BaseViewController.
 *
 * Set as BaseView::mViewEventListener and never owned by the view.
 */
class BaseViewEventListener
{
public:
    virtual ~BaseViewEventListener() = default;

    /** The back key was pressed on the view. */
    virtual void OnViewBackEvent() = 0;

    /** The view's item is about to be popped: true allows it. */
    virtual bool OnViewPopEvent() = 0;

    /**
     * The view's layout is being deleted; the view itself must outlive this call, and its item,
     * which is perhaps being deleted as well, must not be deleted in it.
     */
    virtual void OnViewDeleteEvent() {}
};

} // namespace QivoUi

#endif
