#include "page/stage/Clock.h"
#include "page/stage/Page.h"
#include "page/stage/Vision.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace
{

constexpr double kMotion = 3.0;

class Gallery
{
public:
    explicit Gallery(std::filesystem::path folder) : mFolder(std::move(folder)) {}

    bool ShowAll() const
    {
        bool isSaved = true;
        for (int side : Page::Sides())
        {
            Page page(side);
            for (const std::string& language : Page::Languages())
                isSaved = isSaved && Show(page, language);
            for (const int percent : {130, 200})
            {
                page.SetTextSize(percent / 100.0);
                for (const std::string& language : Page::Languages())
                    isSaved = isSaved && ShowAtRest(page, language, std::to_string(percent));
            }
        }
        return isSaved;
    }

    // What each kind of eye sees of the arrow, with the usual contrast and with high contrast.
    bool ShowEyes() const
    {
        bool isSaved = true;
        Page page(360);
        for (const std::string contrast : {"usual", "high"})
        {
            Page::SetHighContrast(contrast == "high");
            Clock::Advance(kMotion);
            for (const Vision& vision : Vision::All())
                isSaved = isSaved && Save(vision.See(page.Look()), "eyes",
                                          "360-" + contrast + "-" + vision.name + "-shown");
        }
        return isSaved;
    }

private:
    bool Show(Page& page, const std::string& language) const
    {
        page.SetLanguage(language);
        page.ScrollToTop();
        page.SetArrowVisible(false);
        Clock::Advance(kMotion);
        bool isSaved = Save(page, language, "hidden");
        page.SetArrowVisible(true);
        Clock::Advance(kMotion);
        isSaved = isSaved && Save(page, language, "shown");
        const Box text = page.PartBox("help_text");
        page.BringToMiddle(text.Middle());
        isSaved = isSaved && Save(page, language, "text");
        for (size_t line = 0; line < page.Lines().size(); ++line)
        {
            page.BringToMiddle(page.Lines()[line].Middle());
            isSaved = isSaved && Save(page, language, "line" + std::to_string(line + 1));
        }
        return isSaved;
    }

    // As it stands at the top, and after some detents.
    bool ShowAtRest(Page& page, const std::string& language, const std::string& percent) const
    {
        page.SetLanguage(language);
        page.ScrollToTop();
        const bool isSaved = Save(page, language, percent + "-shown");
        Page::TurnBezel(3);
        Clock::Skip();
        return isSaved && Save(page, language, percent + "-text");
    }

    // Once the motions have ended.
    bool Save(const Page& page, const std::string& language, const std::string& state) const
    {
        Clock::Skip();
        return Save(page.Look(), language, std::to_string(page.Side()) + "-" + state);
    }

    bool Save(const Picture& picture, const std::string& folder, const std::string& name) const
    {
        std::filesystem::create_directories(mFolder / folder);
        return picture.Save(mFolder / folder / (name + ".ppm"));
    }

    std::filesystem::path mFolder;
};

} // namespace

/// Renders the page in every language, size and text size into FOLDER/LANGUAGE/SIDE-STATE.ppm, and
/// as each kind of eye sees it into FOLDER/eyes.
int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "%s: takes a folder\n", argv[0]);
        return 2;
    }
    const Gallery gallery(argv[1]);
    return gallery.ShowAll() && gallery.ShowEyes() ? EXIT_SUCCESS : EXIT_FAILURE;
}
