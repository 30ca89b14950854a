#ifndef WATCH_PORT_SYSTEM_SETTINGS_FOLLOWING_H
#define WATCH_PORT_SYSTEM_SETTINGS_FOLLOWING_H

#include <functional>
#include <memory>
#include <utility>

namespace WatchPort
{

/**
 * What a setting hears from a service: followed while it is wanted, else asked once at a time.
 *
 * @tparam Source Asks and follows its service while it lives. It may be deleted by its callbacks.
 */
template <typename Source> class Following
{
public:
    /** Makes a source; null when its bus is not there. */
    using Start = std::function<std::unique_ptr<Source>()>;

    explicit Following(Start start) : mStart(std::move(start)) {}

    /** Asks the service in the background, if no question is out and it is not followed. */
    void Refresh()
    {
        if (!mSource)
            mSource = mStart();
    }

    /** Follows the service, or stops to. */
    void Follow(bool isWanted)
    {
        if (isWanted)
            Refresh();
        else if (mIsFollowed)
            mSource.reset();
        mIsFollowed = isWanted;
    }

    /** To be called by the source's callbacks: one that was only asked ends. */
    void OnAnswer()
    {
        if (!mIsFollowed)
            mSource.reset();
    }

private:
    const Start mStart;
    std::unique_ptr<Source> mSource;
    bool mIsFollowed = false;
};

} // namespace WatchPort

#endif
