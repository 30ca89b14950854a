#ifndef TESTS_PAGE_STAGE_CLOCK_H
#define TESTS_PAGE_STAGE_CLOCK_H

/// The process's time, which stands still unless it is moved by hand. The toolkit's motions go with
/// it, frame by frame.
namespace Clock
{

/// From now on nothing moves by itself; after the toolkit's start.
void TakeOver();

/// Lets time pass at 60 frames a second, with all that happens meanwhile.
void Advance(double seconds);

/// Lets a second pass in one frame, in which shorter motions end.
void Skip();

/// Works off what is waiting, in no time.
void Flush();

} // namespace Clock

#endif
