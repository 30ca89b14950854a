#include "base/TextBuffer.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <sys/mman.h>

namespace WatchPort
{

TextBuffer::~TextBuffer()
{
    if (mBytes != mShort)
        munmap(mBytes, mCapacity);
}

void TextBuffer::Append(std::string_view text)
{
    if (!MakeRoom(text.size()))
        return;
    std::memcpy(mBytes + mSize, text.data(), text.size());
    mSize += text.size();
}

void TextBuffer::Overwrite(size_t position, std::string_view bytes)
{
    if (position + bytes.size() <= mSize)
        std::memcpy(mBytes + position, bytes.data(), bytes.size());
}

bool TextBuffer::AppendFormat(const char* format, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    int length = std::vsnprintf(mBytes + mSize, mCapacity - mSize, format, arguments);
    // The C library ends the text with a null byte, which does not belong to it.
    if (length >= 0 && mCapacity - mSize <= static_cast<size_t>(length))
        length = MakeRoom(static_cast<size_t>(length) + 1)
                     ? std::vsnprintf(mBytes + mSize, mCapacity - mSize, format, again)
                     : 0;
    va_end(again);
    mSize += static_cast<size_t>(std::max(length, 0));
    return length >= 0;
}

// Makes room for that many more bytes.
bool TextBuffer::MakeRoom(size_t size)
{
    if (size <= mCapacity - mSize)
        return true;
    const size_t capacity = std::max(2 * mCapacity, mSize + size);
    void* pages = mBytes == mShort ? mmap(nullptr, capacity, PROT_READ | PROT_WRITE,
                                          MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)
                                   : mremap(mBytes, mCapacity, capacity, MREMAP_MAYMOVE);
    if (pages == MAP_FAILED)
    {
        mIsWhole = false;
        return false;
    }
    if (mBytes == mShort)
        std::memcpy(pages, mShort, mSize);
    mBytes = static_cast<char*>(pages);
    mCapacity = capacity;
    return true;
}

} // namespace WatchPort
