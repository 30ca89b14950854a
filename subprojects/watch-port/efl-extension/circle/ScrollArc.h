#ifndef WATCH_PORT_EFL_EXTENSION_CIRCLE_SCROLL_ARC_H
#define WATCH_PORT_EFL_EXTENSION_CIRCLE_SCROLL_ARC_H

#include <Evas.h>

namespace WatchPort
{

/** The position of a scroller in its one direction of scrolling, in pixels. */
struct ScrollPosition
{
    bool isVertical;
    int position; /**< start of the viewport in the content */
    int viewport; /**< visible length */
    int content;  /**< whole length */

    bool operator==(const ScrollPosition& other) const
    {
        return isVertical == other.isVertical && position == other.position &&
               viewport == other.viewport && content == other.content;
    }
};

/**
 * The arc at a round screen's edge that shows a scroll position: a dim track with the visible part
 * of the content on it. It is at the right for vertical scrolling and at the bottom for horizontal
 * scrolling.
 */
class ScrollArc
{
public:
    /** @param canvasObject the vector graphics object to draw in; must outlive this one */
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
