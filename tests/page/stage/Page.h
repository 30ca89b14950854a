#ifndef TESTS_PAGE_STAGE_PAGE_H
#define TESTS_PAGE_STAGE_PAGE_H

#include "page/stage/Picture.h"
#include "qivo-ui-guide/GuideView.h"

#include <Elementary.h>

#include <memory>
#include <string>
#include <vector>

/// The place of something on the screen, in pixels.
struct Box
{
    int left;
    int top;
    int right;
    int bottom;

    int Middle() const { return (top + bottom) / 2; }
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
};

/// The guide's screen as the application builds it, on a watch without display. There is one at a
/// time.
class Page
{
public:
    /// The sides in pixels of the watch screens that the page is made for.
    static const std::vector<int>& Sides();
    /// The languages that have a catalogue, in alphabetical order; or those that the environment's
    /// PAGE_LANGUAGES names, in its order.
    static std::vector<std::string> Languages();
    /// One of them for each script, and some with long words.
    static std::vector<std::string> Scripts();

    /// The page in English at rest, the arrow shown.
    explicit Page(int side);
    ~Page();
    Page(const Page&) = delete;
    Page& operator=(const Page&) = delete;

    int Side() const { return mSide; }

    /// Turns to another language as the application does.
    void SetLanguage(const std::string& language);
    /// Has the catalogues answer with this text.
    void SetTranslation(const std::string& text);
    /// Has the catalogues answer with their own texts again.
    static void UseCatalogues();
    /// Makes all text larger or smaller, and leaves the page at its top.
    void SetTextSize(double factor);
    /// Gives all colours more contrast.
    static void SetHighContrast(bool isHigh);
    /// Shows or hides the arrow; the motion needs time.
    void SetArrowVisible(bool visible);

    /// Has the text's colours and fonts come from these tables.
    static void SetColorTable(const std::string& file);
    static void SetFontTable(const std::string& file);
    static void UseOwnTables();

    /// Turns the bezel, clockwise when positive; the motion needs time.
    static void TurnBezel(int detents);
    void Touch(int y);
    /// @param sideways how far right of the middle
    void DragTo(int y, int sideways = 0);
    void Release();

    /// Scrolls so far that this height of the screen comes to its middle, or as near as can be.
    void BringToMiddle(int y);
    void ScrollToTop();
    /// The content's height above the screen.
    int ScrolledBy() const;
    /// How far it can scroll.
    int End() const;

    /// The help text's lines from top to bottom, where they are on the screen.
    std::vector<Box> Lines() const;
    /// The places of the help text's glyphs, as wide as each, as high as its line.
    std::vector<Box> Glyphs() const;
    /// The page's layout.
    Evas_Object* Layout() const { return mPage; }
    /// Where a part of the page is on the screen.
    Box PartBox(const char* part) const;
    /// The canvas object of a part of the page.
    Evas_Object* Part(const char* part) const;
    /// An image of the theme's group that a part of the page holds.
    Evas_Object* ImageIn(const char* part, const char* image) const;

    /// The screen as it now is.
    Picture Look() const;

private:
    void ShowView();
    void Settle();

    int mSide;
    // The toolkit takes a touch in the first second for older than it is.
    unsigned int mTime = 10000;
    Evas_Object* mWindow = nullptr;
    Evas_Object* mScroller = nullptr;
    Evas_Object* mPage = nullptr;
    std::unique_ptr<QivoUi::GuideView> mView = std::make_unique<QivoUi::GuideView>();
};

#endif
