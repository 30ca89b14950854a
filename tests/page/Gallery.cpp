#include "page/Clock.h"
#include "page/Page.h"

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

    // Once the motions have ended.
    bool Save(const Page& page, const std::string& language, const std::string& state) const
    {
        Clock::Skip();
        const std::filesystem::path folder = mFolder / language;
        std::filesystem::create_directories(folder);
        return page.Look().Save(folder / (std::to_string(page.Side()) + "-" + state + ".ppm"));
    }

    std::filesystem::path mFolder;
};

} // namespace

/// Renders the page in every language and size into FOLDER/LANGUAGE/SIDE-STATE.ppm.
int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "%s: takes a folder\n", argv[0]);
        return 2;
    }
    return Gallery(argv[1]).ShowAll() ? EXIT_SUCCESS : EXIT_FAILURE;
}
