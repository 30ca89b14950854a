#ifndef SIMULATOR_COMMON_TURNED_LINES_H
#define SIMULATOR_COMMON_TURNED_LINES_H

#include <Evas.h>
#include <vector>

/** A line on a ray from the centre; lengths in the drawing's own unit. */
struct RadialLine
{
    double degrees; ///< clockwise from the top
    double inner;   ///< from the centre; behind it when negative
    double outer;
};

/** How a set of lines is drawn; the colour has its alpha multiplied in. */
struct LineStyle
{
    double width;
    int red;
    int green;
    int blue;
    int alpha;
};

/**
 * A square drawing of radial lines with round ends that turns about its centre, sharp at every
 * angle and size: clock hands, the marks of a ring.
 */
class TurnedLines
{
public:
    /**
     * Adds an empty drawing to the canvas, which owns it and must outlive this object.
     *
     * @param side What the side of the square is in the drawing's own unit.
     */
    TurnedLines(Evas* canvas, double side);
    ~TurnedLines();
    TurnedLines(const TurnedLines&) = delete;
    TurnedLines& operator=(const TurnedLines&) = delete;

    /** The caller places it. */
    Evas_Object* GetObject() const { return mObject; }

    /** Draws lines over the existing ones. */
    void Add(const LineStyle& style, std::vector<RadialLine> lines);

    /** @param degrees Clockwise from the drawing's own position. */
    void Turn(double degrees);

private:
    struct Layer
    {
        Evas_Vg_Shape* mShape;
        double mWidth;
        std::vector<RadialLine> mLines;
    };

    void Draw();
    static void SResizedCB(void* data, Evas* canvas, Evas_Object* object, void* event);

    const double mSide;
    Evas_Object* const mObject;
    Evas_Vg_Container* const mRoot;
    std::vector<Layer> mLayers;
    double mDegrees = 0;
};

#endif
