// What the energy of a detent rests on, as fixed work: callgrind counts its steps and writes one
// profile each, in this order.

#include "counts/Count.h"
#include "page/stage/Clock.h"
#include "page/stage/Page.h"

#include <cstdlib>
#include <sys/shm.h>

namespace
{
constexpr int kPictures = 1000;
constexpr size_t kPictureSize = 518400; // 360 by 360 pixels

// Its calls are counted.
void SFrameCB(void*, Evas*, void*)
{
}

// In a time of its own, in which no machine is busy.
void TurnThereAndBack()
{
    for (const int detents : {1, -1})
    {
        Page::TurnBezel(detents);
        Clock::Advance(1);
    }
}

// The toolkit gives a picture back when it has made the next one.
void SharePictures()
{
    const void* last = nullptr;
    for (int picture = 0; picture < kPictures; ++picture)
    {
        const int id = shmget(IPC_PRIVATE, kPictureSize, IPC_CREAT | 0600);
        const void* next = shmat(id, nullptr, 0);
        if (last)
            shmdt(last);
        last = next;
    }
    shmdt(last);
}
} // namespace

int main()
{
    const Page page(360);
    evas_event_callback_add(evas_object_evas_get(page.Layout()), EVAS_CALLBACK_RENDER_PRE, SFrameCB,
                            nullptr);
    TurnThereAndBack();

    Count(TurnThereAndBack);
    Count(SharePictures);
    // Without the toolkit's own end, which counts for nothing here.
    std::_Exit(0);
}
