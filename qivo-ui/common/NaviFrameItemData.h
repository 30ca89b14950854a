#ifndef QIVO_UI_COMMON_NAVIFRAMEITEMDATA_H
#define QIVO_UI_COMMON_NAVIFRAMEITEMDATA_H

#include "common/NaviFrameStateListener.h"
#include <Evas.h>
#include <string>

namespace QivoUi
{

/**
 * The record of a screen to push; made by a view, kept in a shared pointer, and passed to
 * NaviFrame::PushNaviframeItem().
 */
class NaviFrameItemData
{
public:
    virtual ~NaviFrameItemData() = default;

    /** The screen's root object, which becomes the item's content; owned by the widget tree. */
    Evas_Object* mViewLayout = nullptr;

    /** Reserved: deliberately kept, null and unread, as a slot of the record's memory layout. */
    void* mReserved = nullptr;

    /**
     * The title; an empty one pushes the screen in the title-less item style. The push copies it:
     * where the language changes, the view sets the text of its item anew.
     */
    std::string mTitle;

    /** Follows the screen on the stack; null for none. Not owned. */
    NaviFrameStateListener* mStateListener = nullptr;
};

} // namespace QivoUi

#endif
