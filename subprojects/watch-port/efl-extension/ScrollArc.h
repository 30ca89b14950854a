#ifndef WATCH_PORT_EFL_EXTENSION_SCROLL_ARC_H
#define WATCH_PORT_EFL_EXTENSION_SCROLL_ARC_H

#include <Evas.h>

namespace WatchPort
{

/** Where a scroller stands in the one direction in which it scrolls, in pixels. */
struct ScrollPosition
{
    bool isVertical;
    int position; ///< of the viewport's start in the content
    int viewport; ///< the length that is seen
    int content;  ///< the length that there is

    bool operator==(const ScrollPosition& other) const
    {
        return isVertical == other.isVertical && position == other.position &&
               viewport == other.viewport && content == other.content;
    }
};

/**
 * The arc at a round screen's edge that shows a scroll position: a dim track, and on it the part
 * of the content that is seen. It stands to the right for vertical scrolling and at the bottom for
 * horizontal scrolling.
 */
class ScrollArc
{
public:
    /** @param canvasObject the vector graphics object to draw in; it outlives this one */
    explicit ScrollArc(Evas_Object* canvasObject);

    /** Draws the arc at the edge of the circle that fits into the screen. */
    void Draw(const Eina_Rectangle& screen, const ScrollPosition& position);
    void Hide();

private:
    void Stroke(Evas_Vg_Shape* shape, double start, double end, bool isVertical) const;

    Evas_Object* mCanvasObject;
    Evas_Vg_Shape* mTrack;
    Evas_Vg_Shape* mThumb;
    Eina_Rectangle mScreen{};
};

} // namespace WatchPort

#endif
