#ifndef WATCH_PORT_BASE_TEXT_BUFFER_H
#define WATCH_PORT_BASE_TEXT_BUFFER_H

#include <cstdarg>
#include <cstddef>
#include <string_view>

namespace WatchPort
{

/**
 * A text that is built without the heap: the log must work when the heap is exhausted, where an
 * allocation would call the new-handler that is just logging.
 *
 * A short text is in the object itself, a longer one in pages of its own. If no pages can be mapped
 * the text is cut, and IsWhole() is false.
 */
class TextBuffer
{
public:
    TextBuffer() = default;
    ~TextBuffer();
    TextBuffer(const TextBuffer&) = delete;
    TextBuffer& operator=(const TextBuffer&) = delete;

    /** Adds the text, or nothing if there is not enough room for it. */
    void Append(std::string_view text);
    void Append(char character) { Append({&character, 1}); }

    /** Adds what the format expands to; returns false when the C library cannot expand it. */
    bool AppendFormat(const char* format, va_list arguments);

    /** Replaces some of the bytes that have been added. */
    void Overwrite(size_t position, std::string_view bytes);

    /** The text so far, valid until the next addition. */
    std::string_view View() const { return {mBytes, mSize}; }

    /** Whether there was room for everything that was added. */
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
