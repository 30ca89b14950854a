#ifndef SIMULATOR_BODY_INPUT_DETENT_DRAG_H
#define SIMULATOR_BODY_INPUT_DETENT_DRAG_H

/** The bezel has 24 detents a turn. */
constexpr double kDegreesPerDetent = 15;

/** Counts the detents that a drag of the bezel ring passes. */
class DetentDrag
{
public:
    /** @param angle Where the drag begins, in degrees clockwise from anywhere. */
    explicit DetentDrag(double angle) : mAngle(angle) {}

    /**
     * Moves to another angle, the shorter way round.
     *
     * @return The detents passed since the last call, clockwise positive.
     */
    int MoveTo(double angle);

private:
    double mAngle;
    double mTurned = 0; ///< since the last detent
};

#endif
