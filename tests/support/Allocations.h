#ifndef TESTS_SUPPORT_ALLOCATIONS_H
#define TESTS_SUPPORT_ALLOCATIONS_H

/**
 * Counts what the code under test allocates with operator new, and has one of them or all fail.
 *
 * The counting is done by an operator new that only some test programs bring along; the harness
 * always says when it is itself at work.
 */
namespace Allocations
{

/** How many levels of the harness are at work; nothing is counted or fails meanwhile. */
inline int sPauses = 0;

/** Allocations since Start(). */
inline long sCount = 0;

/** Which of them fails, once; 0 for none. */
inline long sFailing = 0;

/** Whether each of them fails, however often it is tried. */
inline bool sIsExhausted = false;

/** Whether anything is counted at all. */
inline bool sIsCounting = false;

/** Nothing is counted and nothing fails while one of these lives. */
class Pause
{
public:
    Pause() { ++sPauses; }
    ~Pause() { --sPauses; }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;
};

/** From now on counts; the nth allocation fails its first attempt, none for 0. */
inline void Start(long nth)
{
    sCount = 0;
    sFailing = nth;
    sIsCounting = true;
}

/** From now on counts, and there is no memory for anything. */
inline void Exhaust()
{
    Start(0);
    sIsExhausted = true;
}

/** Ends the counting. @return how many there were */
inline long Stop()
{
    sIsCounting = false;
    sIsExhausted = false;
    return sCount;
}

} // namespace Allocations

#endif
