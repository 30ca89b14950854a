#ifndef WATCH_PORT_EFL_EXTENSION_CIRCLE_WHOLE_LINES_H
#define WATCH_PORT_EFL_EXTENSION_CIRCLE_WHOLE_LINES_H

#include <Elementary.h>

namespace WatchPort
{

/**
 * Where a scroller comes to rest: whole lines of text stand in the same places there, for pages
 * whose first line stands in one of them. A line is as high as the text size has it
 * (kTextSizeClass): at the usual size eight are as high as the scroller.
 *
 * As long as it lives, a page that a finger has left goes on to the nearest such place, and the
 * scroller's theme gets the signal "watch,content,size" when there is more or less of the page.
 */
class WholeLines
{
public:
    /** @param scroller outlives this object */
    explicit WholeLines(Evas_Object* scroller);
    ~WholeLines();
    WholeLines(const WholeLines&) = delete;
    WholeLines& operator=(const WholeLines&) = delete;

    /** How far a detent goes in a viewport: as many lines as are in a quarter of it. */
    static int Step(int viewport);

private:
    static void STouchedCB(void* data, Evas_Object* object, void* event);
    static void SMovingCB(void* data, Evas_Object* object, void* event);
    static void SStandsCB(void* data, Evas_Object* object, void* event);
    static void STextSizeCB(void* data, Evas_Object* object, const char* signal,
                            const char* source);
    static void SResizedCB(void* data, Evas* canvas, Evas_Object* content, void* event);
    static void SLookCB(void* data);

    void LookSoon();
    void LookLater();
    void ComeToRest();

    Evas_Object* mScroller;
    Ecore_Job* mLook = nullptr;
    bool mIsOffLine =
        false; /**< A finger, or another text size, may have moved it off the lines. */
};

} // namespace WatchPort

#endif
