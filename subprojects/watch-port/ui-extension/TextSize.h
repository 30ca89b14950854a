#ifndef WATCH_PORT_UI_EXTENSION_TEXT_SIZE_H
#define WATCH_PORT_UI_EXTENSION_TEXT_SIZE_H

namespace WatchPort
{

/** The factor by which all text is larger than usual. */
class TextSize
{
public:
    /** A factor out of range is taken for the nearest in it, one that is no number for 1. */
    explicit TextSize(double factor = 1.0);

    /** A font size, at this factor. */
    int Of(int fontSize) const;
    /** Tells the themes of the toolkit and of the applications. */
    void Publish() const;

    bool operator==(const TextSize& other) const { return mFactor == other.mFactor; }

private:
    int Percent() const { return Of(100); }
    int LineHeight() const;

    double mFactor;
};

} // namespace WatchPort

#endif
