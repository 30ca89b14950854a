#ifndef WATCH_PORT_BASE_TEXT_BUFFER_H
#define WATCH_PORT_BASE_TEXT_BUFFER_H

#include <cstdarg>
#include <cstddef>
#include <string_view>

namespace WatchPort
{

/**
 * A text that is put together without the heap: the log is also written to when the heap is
 * exhausted, where an allocation would call the new-handler that is just logging.
 *
 * A short text stands in the object itself, a longer one in pages of its own. When no pages are to
 * be had, the text is cut and IsWhole() tells.
 */
class TextBuffer
{
public:
    TextBuffer() = default;
    ~TextBuffer();
    TextBuffer(const TextBuffer&) = delete;
    TextBuffer& operator=(const TextBuffer&) = delete;

    /** Adds the text, or nothing when there is no room for all of it. */
    void Append(std::string_view text);
    void Append(char character) { Append({&character, 1}); }

    /** Adds what the format expands to; returns false when the C library cannot expand it. */
    bool AppendFormat(const char* format, va_list arguments);

    /** Puts other bytes in the place of some that have been added. */
    void Overwrite(size_t position, std::string_view bytes);

    /** What has been added, until the next addition. */
    std::string_view View() const { return {mBytes, mSize}; }

    /** Tells whether there was room for all that was added. */
    bool IsWhole() const { return mIsWhole; }

private:
    bool MakeRoom(size_t size);

    char mShort[1024] = {};
    char* mBytes = mShort;
    size_t mSize = 0;
    size_t mCapacity = sizeof mShort;
    bool mIsWhole = true;
};

} // namespace WatchPort

#endif
