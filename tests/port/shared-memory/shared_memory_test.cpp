#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <set>
#include <sys/shm.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{

constexpr size_t kPicture = 518400; // 360 by 360 pixels

int sNothing = 0;

/// A picture that is shared as the toolkit does it.
struct Picture
{
    explicit Picture(size_t wanted = kPicture)
        : size(wanted), id(shmget(IPC_PRIVATE, size, IPC_CREAT | 0600)),
          pixels(static_cast<unsigned char*>(shmat(id, nullptr, 0)))
    {
    }

    void GiveBack() const
    {
        EXPECT_EQ(shmdt(pixels), 0);
        shmctl(id, IPC_RMID, nullptr);
    }

    bool IsBlack() const
    {
        return std::all_of(pixels, pixels + size, [](unsigned char part) { return part == 0; });
    }

    size_t size;
    int id;
    unsigned char* pixels;
};

bool IsGone(int id)
{
    shmid_ds about{};
    return shmctl(id, IPC_STAT, &about) != 0;
}

TEST(SharedMemory, IsThatOfTheFrameBeforeTheLast)
{
    Picture last;
    std::set<int> ids{last.id};
    for (int frame = 1; frame < 20; ++frame)
    {
        const Picture next;
        last.GiveBack();
        last = next;
        ids.insert(last.id);
    }
    EXPECT_EQ(ids.size(), 2);
    last.GiveBack();
}

TEST(SharedMemory, IsBlackEachTime)
{
    const Picture shown;
    const Picture before;
    std::memset(before.pixels, 0xff, before.size);
    before.GiveBack();
    const Picture next;
    EXPECT_EQ(next.pixels, before.pixels);
    EXPECT_TRUE(next.IsBlack());
    next.GiveBack();
    shown.GiveBack();
}

TEST(SharedMemory, FitsPicturesThatDifferBySomeLines)
{
    const Picture shown;
    const Picture low(kPicture / 2);
    low.GiveBack();
    const Picture high;
    EXPECT_EQ(high.id, low.id);
    EXPECT_TRUE(high.IsBlack());
    high.GiveBack();
    shown.GiveBack();
}

TEST(SharedMemory, IsNewForALargerPicture)
{
    const Picture shown;
    const Picture before;
    before.GiveBack();
    const Picture large(4 * kPicture);
    EXPECT_NE(large.id, before.id);
    EXPECT_TRUE(IsGone(before.id)) << "what does not fit is not kept";
    EXPECT_TRUE(large.IsBlack());
    large.GiveBack();
    shown.GiveBack();
}

TEST(SharedMemory, IsGoneWithTheLastPicture)
{
    const Picture first;
    const Picture second;
    first.GiveBack();
    EXPECT_FALSE(IsGone(first.id));
    second.GiveBack();
    EXPECT_TRUE(IsGone(first.id));
    EXPECT_TRUE(IsGone(second.id));
}

TEST(SharedMemory, OfMorePicturesThanAreRememberedIsSharedAndGivenBackAllTheSame)
{
    std::vector<Picture> pictures(40);
    std::set<unsigned char*> places;
    for (const Picture& picture : pictures)
    {
        EXPECT_TRUE(picture.IsBlack());
        places.insert(picture.pixels);
    }
    EXPECT_EQ(places.size(), pictures.size());
    for (const Picture& picture : pictures)
        picture.GiveBack();
    for (const Picture& picture : pictures)
        EXPECT_TRUE(IsGone(picture.id));
}

// Nothing could be cleared in it for the next picture.
TEST(SharedMemory, ThatCannotBeWrittenIsNotKept)
{
    const Picture shown;
    const int id = shmget(IPC_PRIVATE, kPicture, IPC_CREAT | 0600);
    const void* const pixels = shmat(id, nullptr, SHM_RDONLY);
    EXPECT_EQ(shmdt(pixels), 0);
    EXPECT_TRUE(IsGone(id));
    shown.GiveBack();
}

TEST(SharedMemory, ThatIsAttachedTwiceIsNotUsedAgainMeanwhile)
{
    const Picture shown;
    const Picture picture;
    void* const again = shmat(picture.id, nullptr, 0);
    EXPECT_NE(again, picture.pixels);
    picture.GiveBack();
    const Picture next;
    EXPECT_NE(next.id, picture.id);
    EXPECT_EQ(shmdt(again), 0);
    next.GiveBack();
    shown.GiveBack();
    EXPECT_TRUE(IsGone(picture.id));
}

/// Another process, which attaches a picture and looks at its first part when told to.
class Reader
{
public:
    Reader()
    {
        EXPECT_EQ(pipe(mToReader), 0);
        EXPECT_EQ(pipe(mFromReader), 0);
        mProcess = fork();
        if (mProcess == 0)
            Read();
    }

    ~Reader()
    {
        for (const int end : {mToReader[0], mToReader[1], mFromReader[0], mFromReader[1]})
            close(end);
    }

    void Attach(int id)
    {
        char isDone = 0;
        EXPECT_EQ(write(mToReader[1], &id, sizeof id), sizeof id);
        EXPECT_EQ(read(mFromReader[0], &isDone, 1), 1);
    }

    int WhatItSees()
    {
        const int now = 0;
        int status = -1;
        EXPECT_EQ(write(mToReader[1], &now, sizeof now), sizeof now);
        EXPECT_EQ(waitpid(mProcess, &status, 0), mProcess);
        return WEXITSTATUS(status);
    }

private:
    [[noreturn]] void Read()
    {
        int told = -1;
        bool isTold = read(mToReader[0], &told, sizeof told) == sizeof told;
        const auto* const pixels = static_cast<unsigned char*>(shmat(told, nullptr, SHM_RDONLY));
        isTold = isTold && write(mFromReader[1], "", 1) == 1 &&
                 read(mToReader[0], &told, sizeof told) == sizeof told;
        _exit(isTold ? pixels[0] : 0);
    }

    int mToReader[2] = {};
    int mFromReader[2] = {};
    pid_t mProcess = -1;
};

// As a screen does that is late, or one that an application shares its own memory with.
TEST(SharedMemory, ThatAnotherProcessReadsIsNotUsedAgainMeanwhile)
{
    Reader reader;
    const Picture shown;
    const Picture picture;
    picture.pixels[0] = 7;
    reader.Attach(picture.id);
    picture.GiveBack();
    const Picture next;
    EXPECT_NE(next.id, picture.id);
    EXPECT_EQ(reader.WhatItSees(), 7);
    const Picture afterwards;
    EXPECT_EQ(afterwards.id, picture.id);
    for (const Picture& last : {afterwards, next, shown})
        last.GiveBack();
}

TEST(SharedMemory, ThatIsGivenBackTwiceIsRefusedAndStays)
{
    const Picture shown;
    const Picture picture;
    picture.GiveBack();
    EXPECT_EQ(shmdt(picture.pixels), -1);
    EXPECT_EQ(errno, EINVAL);
    const Picture next;
    EXPECT_EQ(next.id, picture.id);
    EXPECT_TRUE(next.IsBlack());
    next.GiveBack();
    shown.GiveBack();
}

TEST(SharedMemory, IsOpenToThoseAloneForWhomItIsWanted)
{
    const Picture shown;
    const Picture picture;
    picture.GiveBack();
    const int open = shmget(IPC_PRIVATE, kPicture, IPC_CREAT | 0666);
    EXPECT_NE(open, picture.id);
    shmctl(open, IPC_RMID, nullptr);
    shown.GiveBack();
}

TEST(SharedMemory, IsAttachedWithTheRightsThatAreWanted)
{
    const Picture shown;
    const Picture before;
    before.GiveBack();
    const int id = shmget(IPC_PRIVATE, kPicture, IPC_CREAT | 0600);
    EXPECT_EQ(id, before.id);
    void* const pixels = shmat(id, nullptr, SHM_RDONLY);
    EXPECT_NE(pixels, before.pixels);
    const Picture next;
    EXPECT_NE(next.id, id);
    EXPECT_EQ(shmdt(pixels), 0);
    next.GiveBack();
    shown.GiveBack();
    EXPECT_TRUE(IsGone(id));
}

TEST(SharedMemory, OfAChildLastsWhenItsParentHasGivenItBack)
{
    const Picture shown;
    const Picture picture;
    picture.pixels[0] = 7;
    int given[2];
    ASSERT_EQ(pipe(given), 0);
    const pid_t child = fork();
    if (child == 0)
    {
        char go = 0;
        const bool isTold = read(given[0], &go, 1) == 1;
        _exit(isTold && picture.pixels[0] == 7 ? 0 : 1);
    }
    picture.GiveBack();
    const Picture next;
    EXPECT_NE(next.id, picture.id);
    EXPECT_EQ(write(given[1], "", 1), 1);
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    close(given[0]);
    close(given[1]);
    next.GiveBack();
    shown.GiveBack();
}

TEST(SharedMemory, ThatHasANameIsAsLargeAsItIsWantedAndStaysThere)
{
    const int id = shmget(getpid(), kPicture, IPC_CREAT | 0600);
    shmid_ds about{};
    EXPECT_EQ(shmctl(id, IPC_STAT, &about), 0);
    EXPECT_EQ(about.shm_segsz, kPicture);
    void* const pixels = shmat(id, nullptr, 0);
    EXPECT_EQ(shmget(getpid(), kPicture, 0), id);
    EXPECT_EQ(shmdt(pixels), 0);
    EXPECT_FALSE(IsGone(id));
    shmctl(id, IPC_RMID, nullptr);
}

TEST(SharedMemory, ThatIsNotThereIsRefused)
{
    EXPECT_EQ(shmat(-1, nullptr, 0), reinterpret_cast<void*>(-1));
    EXPECT_EQ(shmdt(&sNothing), -1);
}

} // namespace
