#include "page/stage/Ink.h"
#include "page/stage/Page.h"

#include <Eina.h>
#include <fontconfig/fontconfig.h>
#include <gmock/gmock.h>
#include <libintl.h>
#include <memory>
#include <set>
#include <sstream>

using testing::SizeIs;

namespace
{

// No letter, and none will ever be.
constexpr const char* kNoLetter = "\uFDD0";

/// A part of a picture.
struct Stamp
{
    const Picture& picture;
    Box box;

    bool IsAt(const Picture& other, int left, int top) const
    {
        for (int y = 0; y < box.Height(); ++y)
        {
            for (int x = 0; x < box.Width(); ++x)
            {
                if (picture.At(box.left + x, box.top + y) != other.At(left + x, top + y))
                    return false;
            }
        }
        return true;
    }

    bool IsIn(const Picture& other, const Box& place) const
    {
        for (int top = place.top; top + box.Height() <= place.bottom; ++top)
        {
            for (int left = place.left; left + box.Width() <= place.right; ++left)
            {
                if (IsAt(other, left, top))
                    return true;
            }
        }
        return false;
    }
};

/// The fonts that the toolkit asks for a letter, in turn, as it sets them up from a style.
class Fonts
{
public:
    explicit Fonts(const std::string& style) : mPattern(FcPatternCreate(), FcPatternDestroy)
    {
        const std::string font = Value(style, "font=");
        AddFamily(font.substr(0, font.find(':')));
        std::istringstream fallbacks(Value(style, "font_fallbacks="));
        for (std::string family; std::getline(fallbacks, family, ',');)
            AddFamily(family);
        FcConfigSubstitute(nullptr, mPattern.get(), FcMatchPattern);
        FcDefaultSubstitute(mPattern.get());
        FcResult result{};
        mFonts.reset(FcFontSort(nullptr, mPattern.get(), FcTrue, nullptr, &result));
    }

    /// The first font that has the letter, "" when none has it.
    std::string Of(Eina_Unicode letter) const
    {
        for (int index = 0; index < mFonts->nfont; ++index)
        {
            FcCharSet* letters = nullptr;
            FcChar8* family = nullptr;
            FcPatternGetCharSet(mFonts->fonts[index], FC_CHARSET, 0, &letters);
            FcPatternGetString(mFonts->fonts[index], FC_FAMILY, 0, &family);
            if (FcCharSetHasChar(letters, letter))
                return reinterpret_cast<const char*>(family);
        }
        return "";
    }

private:
    static std::string Value(const std::string& style, const std::string& key)
    {
        const size_t start = style.find(key) + key.size();
        return style.substr(start, style.find_first_of(" '", start) - start);
    }

    void AddFamily(const std::string& family)
    {
        FcPatternAddString(mPattern.get(), FC_FAMILY,
                           reinterpret_cast<const FcChar8*>(family.c_str()));
    }

    std::unique_ptr<FcPattern, void (*)(FcPattern*)> mPattern;
    std::unique_ptr<FcFontSet, void (*)(FcFontSet*)> mFonts{nullptr, FcFontSetDestroy};
};

class Font : public testing::Test
{
protected:
    std::string Style() const
    {
        return evas_textblock_style_get(evas_object_textblock_style_get(mPage.Part("help_text")));
    }

    // What stands for a letter that no font has.
    Stamp MissingLetter()
    {
        mPage.SetTranslation(kNoLetter);
        mMissing = std::make_unique<Picture>(mPage.Look());
        const Box line = mPage.Lines().front();
        return {*mMissing, Ink::Within(*mMissing, line.top, line.bottom).value()};
    }

    // The lines of a text that is not longer than the screen.
    bool HasInText(const Stamp& stamp)
    {
        mPage.BringToMiddle(mPage.PartBox("help_text").Middle());
        Box text = mPage.PartBox("help_text");
        text.top = std::max(text.top, 0);
        text.bottom = std::min(text.bottom, mPage.Side());
        return stamp.IsIn(mPage.Look(), text);
    }

    Page mPage{360};
    std::unique_ptr<Picture> mMissing;
};

TEST_F(Font, NoLetterOfAnyLanguageIsMissing)
{
    const Stamp missing = MissingLetter();
    mPage.SetTranslation(std::string("Qivo ") + kNoLetter + " Qivo");
    EXPECT_TRUE(HasInText(missing)) << "it can be found";
    mPage.SetTranslation("Qivo");
    EXPECT_FALSE(HasInText(missing));
    mPage.UseCatalogues();
    for (const std::string& language : Page::Languages())
    {
        mPage.SetLanguage(language);
        mPage.ScrollToTop();
        EXPECT_FALSE(HasInText(missing)) << language;
    }
}

// The full stop of several Indic scripts, which stands alone.
bool IsDanda(Eina_Unicode letter)
{
    return letter == 0x964 || letter == 0x965;
}

// Letters combine only with letters of the same font.
TEST_F(Font, ALanguageTakesWhatTheTablesFontLacksFromOneOther)
{
    const Fonts fonts(Style());
    const std::string own = fonts.Of('Q');
    for (const std::string& language : Page::Languages())
    {
        mPage.SetLanguage(language);
        const std::string text = elm_object_part_text_get(mPage.Layout(), "help_text");
        std::set<std::string> others;
        int next = 0;
        while (Eina_Unicode letter = eina_unicode_utf8_next_get(text.c_str(), &next))
        {
            const std::string font = fonts.Of(letter);
            EXPECT_NE(font, "") << language << " " << std::hex << static_cast<unsigned>(letter);
            if (font != own && !IsDanda(letter))
                others.insert(font);
        }
        EXPECT_THAT(others, SizeIs(testing::Le(1U))) << language;
    }
}

} // namespace
