#include "body/screen/NestedScreen.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <utility>
#include <xcb/xfixes.h>
#include <xcb/xtest.h>

namespace
{
constexpr uint32_t kAllPlanes = 0xFFFFFFFF;
constexpr uint8_t kFirstButton = XCB_BUTTON_INDEX_1;
constexpr uint8_t kDepth = 24;

struct FreeDeleter
{
    void operator()(void* memory) const { std::free(memory); }
};
template <typename Reply> using Owned = std::unique_ptr<Reply, FreeDeleter>;

template <typename Reply> Owned<Reply> Own(Reply* reply)
{
    return Owned<Reply>(reply);
}
} // namespace

// A segment that the server writes pictures into. Once both sides are attached it is marked for
// removal, so nothing is left of it however the process ends.
class NestedScreen::SharedMemory
{
public:
    SharedMemory(xcb_connection_t* connection, size_t size)
        : mConnection(connection), mId(shmget(IPC_PRIVATE, size, IPC_CREAT | 0600)),
          mData(mId < 0 ? kFailed : shmat(mId, nullptr, SHM_RDONLY)),
          mSegment(xcb_generate_id(connection))
    {
        if (mData != kFailed)
            mIsAttached = !Own(xcb_request_check(
                connection, xcb_shm_attach_checked(connection, mSegment, mId, 0)));
        shmctl(mId, IPC_RMID, nullptr);
    }
    ~SharedMemory()
    {
        if (mIsAttached)
            xcb_shm_detach(mConnection, mSegment);
        if (mData != kFailed)
            shmdt(mData);
    }
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;

    bool IsAttached() const { return mIsAttached; }
    xcb_shm_seg_t GetSegment() const { return mSegment; }
    const uint32_t* GetData() const { return static_cast<const uint32_t*>(mData); }

private:
    static inline void* const kFailed = reinterpret_cast<void*>(-1);

    xcb_connection_t* const mConnection;
    const int mId;
    void* const mData;
    const xcb_shm_seg_t mSegment;
    bool mIsAttached = false;
};

NestedScreen::NestedScreen(const std::string& display, int size, ChangeCallback onChange,
                           GoneCallback onGone)
    : mDisplay(display), mSize(size), mOnChange(std::move(onChange)), mOnGone(std::move(onGone)),
      mConnection(xcb_connect(display.c_str(), nullptr), xcb_disconnect),
      mPixels(new uint32_t[static_cast<size_t>(size) * size]())
{
    if (xcb_connection_has_error(mConnection.get()))
        Refuse("cannot be reached");
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(mConnection.get())).data;
    if (screen->width_in_pixels != size || screen->height_in_pixels != size ||
        screen->root_depth != kDepth)
        Refuse("is " + std::to_string(screen->width_in_pixels) + "x" +
               std::to_string(screen->height_in_pixels) + "x" + std::to_string(screen->root_depth) +
               " (" + std::to_string(size) + "x" + std::to_string(size) + "x24)");
    mRoot = screen->root;
    RequireExtensions();
    mShared = std::make_unique<SharedMemory>(mConnection.get(), sizeof(uint32_t) * size * size);
    if (!mShared->IsAttached())
        Refuse("does not share memory");
    WatchDamage();
}

// The server first reports the whole screen as damaged. Events that are already in the queue must
// be taken before the first wait: they no longer make the connection readable.
void NestedScreen::Start()
{
    mHandler = ecore_main_fd_handler_add(xcb_get_file_descriptor(mConnection.get()), ECORE_FD_READ,
                                         SReadableCB, this, nullptr, nullptr);
    xcb_flush(mConnection.get());
    Update();
}

NestedScreen::~NestedScreen()
{
    if (mHandler)
        ecore_main_fd_handler_del(mHandler);
}

void NestedScreen::Refuse(const std::string& why) const
{
    throw std::runtime_error("the screen " + mDisplay + " " + why);
}

void NestedScreen::RequireExtensions()
{
    xcb_connection_t* connection = mConnection.get();
    for (xcb_extension_t* extension : {&xcb_damage_id, &xcb_shm_id, &xcb_xfixes_id, &xcb_test_id})
    {
        const xcb_query_extension_reply_t* found = xcb_get_extension_data(connection, extension);
        if (!found || !found->present)
            Refuse("lacks an extension (DAMAGE, MIT-SHM, XFIXES, XTEST)");
    }
    // The server serves these two only to clients that have asked for a version.
    Own(xcb_damage_query_version_reply(connection, xcb_damage_query_version(connection, 1, 1),
                                       nullptr));
    Own(xcb_xfixes_query_version_reply(connection, xcb_xfixes_query_version(connection, 5, 0),
                                       nullptr));
    mDamageEvent = xcb_get_extension_data(connection, &xcb_damage_id)->first_event;
}

void NestedScreen::WatchDamage()
{
    xcb_connection_t* connection = mConnection.get();
    mDamage = xcb_generate_id(connection);
    mRegion = xcb_generate_id(connection);
    xcb_damage_create(connection, mDamage, mRoot, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    xcb_xfixes_create_region(connection, mRegion, 0, nullptr);
}

// The rectangle around everything drawn since the last time.
Eina_Rectangle NestedScreen::TakeDamage()
{
    xcb_connection_t* connection = mConnection.get();
    xcb_damage_subtract(connection, mDamage, XCB_NONE, mRegion);
    const auto region = Own(xcb_xfixes_fetch_region_reply(
        connection, xcb_xfixes_fetch_region(connection, mRegion), nullptr));
    if (!region)
        return {0, 0, 0, 0};
    const int left = std::max<int>(region->extents.x, 0);
    const int top = std::max<int>(region->extents.y, 0);
    return {left, top, std::min(region->extents.x + region->extents.width, mSize) - left,
            std::min(region->extents.y + region->extents.height, mSize) - top};
}

void NestedScreen::Fetch(const Eina_Rectangle& area)
{
    xcb_connection_t* connection = mConnection.get();
    const auto cookie = xcb_shm_get_image(
        connection, mRoot, static_cast<int16_t>(area.x), static_cast<int16_t>(area.y),
        static_cast<uint16_t>(area.w), static_cast<uint16_t>(area.h), kAllPlanes,
        XCB_IMAGE_FORMAT_Z_PIXMAP, mShared->GetSegment(), 0);
    if (!Own(xcb_shm_get_image_reply(connection, cookie, nullptr)))
        return;
    for (int row = 0; row < area.h; ++row)
        std::copy_n(mShared->GetData() + static_cast<size_t>(row) * area.w, area.w,
                    mPixels.get() + static_cast<size_t>(area.y + row) * mSize + area.x);
}

// Whether damage was among them. Events that were queued while waiting for a reply count too.
bool NestedScreen::TakeEvents()
{
    bool isDamaged = false;
    while (const auto event = Own(xcb_poll_for_event(mConnection.get())))
        isDamaged = isDamaged || (event->response_type & 0x7F) == mDamageEvent;
    return isDamaged;
}

void NestedScreen::Update()
{
    while (TakeEvents())
    {
        const Eina_Rectangle area = TakeDamage();
        if (area.w <= 0 || area.h <= 0)
            continue;
        Fetch(area);
        mOnChange(area);
    }
}

Eina_Bool NestedScreen::SReadableCB(void* data, Ecore_Fd_Handler* /*handler*/)
{
    auto* screen = static_cast<NestedScreen*>(data);
    screen->Update();
    if (!xcb_connection_has_error(screen->mConnection.get()))
        return ECORE_CALLBACK_RENEW;
    screen->mHandler = nullptr;
    screen->mOnGone();
    return ECORE_CALLBACK_CANCEL;
}

void NestedScreen::FakePointer(uint8_t type, uint8_t detail, int x, int y)
{
    xcb_test_fake_input(mConnection.get(), type, detail, XCB_CURRENT_TIME, mRoot,
                        static_cast<int16_t>(x), static_cast<int16_t>(y), 0);
}

void NestedScreen::PressTouch(int x, int y)
{
    FakePointer(XCB_MOTION_NOTIFY, 0, x, y);
    FakePointer(XCB_BUTTON_PRESS, kFirstButton, x, y);
    xcb_flush(mConnection.get());
}

void NestedScreen::MoveTouch(int x, int y)
{
    FakePointer(XCB_MOTION_NOTIFY, 0, x, y);
    xcb_flush(mConnection.get());
}

void NestedScreen::ReleaseTouch(int x, int y)
{
    FakePointer(XCB_MOTION_NOTIFY, 0, x, y);
    FakePointer(XCB_BUTTON_RELEASE, kFirstButton, x, y);
    xcb_flush(mConnection.get());
}
