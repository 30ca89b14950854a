#include "page/stage/Page.h"

#include "application/Toolkit.h"
#include "common/NaviFrame.h"
#include "common/RotaryEventManager.h"
#include "page/stage/Clock.h"
#include "support/Toolkit.h"
#include "texts/CatalogueList.h"
#include "texts/LocaleName.h"
#include "texts/TextLocale.h"
#include "ui-extension/Appearance.h"

#include <Ecore_Evas.h>
#include <algorithm>
#include <app_common.h>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <libintl.h>
#include <optional>
#include <sstream>
#include <ui_extension.h>

namespace fs = std::filesystem;

namespace
{

constexpr const char* kTextDomain = "qivo-guide-app";
constexpr double kScale = 1.3 / 360;
constexpr double kMotion = 4.0;

std::optional<std::string> gTranslation;

std::string Resource(const std::string& name)
{
    char* folder = app_get_resource_path();
    std::string path = folder + name;
    free(folder);
    return path;
}

std::string LocaleFolder()
{
    return Resource("locale");
}

void StartToolkit()
{
    static bool sIsStarted = false;
    if (sIsStarted)
        return;
    sIsStarted = true;
    // A thread would draw in real time, and motions, which wait for it, would begin late.
    setenv("ECORE_EVAS_FORCE_SYNC_RENDER", "1", 1);
    Toolkit::Start(PLATFORM_THEME);
    WatchPort::SetTextLocale();
    bindtextdomain(kTextDomain, LocaleFolder().c_str());
    bind_textdomain_codeset(kTextDomain, "UTF-8");
    textdomain(kTextDomain);
    static const WatchPort::Display sDisplay;
    static const auto* const sWatch = new WatchPort::Toolkit(0, nullptr, sDisplay);
    static_cast<void>(sWatch);
    elm_app_base_scale_set(1.3);
    uxt_theme_set_changeable_ui_enabled(EINA_TRUE);
    Page::UseOwnTables();
    Clock::TakeOver();
}

Box BoxOf(const Evas_Object* object)
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    evas_object_geometry_get(object, &x, &y, &width, &height);
    return {x, y, x + width, y + height};
}

} // namespace

// The linker sends the application's call here.
extern "C" char* __real_dgettext(const char* domain, const char* id);

extern "C" char* __wrap_dgettext(const char* domain, const char* id)
{
    return gTranslation ? gTranslation->data() : __real_dgettext(domain, id);
}

const std::vector<int>& Page::Sides()
{
    static const std::vector<int> sSides = {360, 390, 454};
    return sSides;
}

std::vector<std::string> Page::Languages()
{
    if (const char* chosen = std::getenv("PAGE_LANGUAGES"))
    {
        std::istringstream words(chosen);
        return {std::istream_iterator<std::string>(words), {}};
    }
    std::vector<std::string> languages;
    for (const auto& entry : fs::directory_iterator(LocaleFolder()))
    {
        if (fs::exists(entry.path() / "LC_MESSAGES" / (std::string(kTextDomain) + ".mo")))
            languages.push_back(entry.path().filename());
    }
    std::sort(languages.begin(), languages.end());
    return languages;
}

std::vector<std::string> Page::Scripts()
{
    if (std::getenv("PAGE_LANGUAGES"))
        return Languages();
    return {"am", "ar", "bn", "de", "el", "gu", "he", "hi", "hy", "ja", "ka", "km", "kn",
            "ko", "lo", "ml", "my", "or", "pa", "ru", "si", "ta", "te", "th", "vi", "zh_CN"};
}

Page::Page(int side) : mSide(side)
{
    StartToolkit();
    elm_config_scale_set(kScale * side);
    mWindow = Toolkit::AddWindow(side);
    Toolkit::TakeInput(mWindow);
    ShowView();
    SetLanguage("en");
    Clock::Advance(kMotion);
}

void Page::ShowView()
{
    Evas_Object* layout = elm_layout_add(mWindow);
    elm_layout_theme_set(layout, "layout", "application", "default");
    evas_object_size_hint_weight_set(layout, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(mWindow, layout);
    evas_object_show(layout);
    QivoUi::NaviFrame::GetInstance()->CreateNaviFrame(layout);
    mView->CreateView();
    mView->Show(false);
    mScroller = elm_object_part_content_get(mView->GetViewLayout(), "scroller");
    Eina_List* children = elm_box_children_get(elm_object_content_get(mScroller));
    mPage = static_cast<Evas_Object*>(eina_list_data_get(children));
    eina_list_free(children);
}

Page::~Page()
{
    UseCatalogues();
    WatchPort::SetTextSize(1.0);
    WatchPort::SetHighContrast(false);
    mView.reset();
    Toolkit::LeaveInput();
    QivoUi::NaviFrame::Destroy();
    evas_object_del(mWindow);
    Clock::Flush();
    QivoUi::RotaryEventManager::Destroy();
}

void Page::SetLanguage(const std::string& language)
{
    const std::string locale = WatchPort::NormaliseLocale(language).value();
    WatchPort::ChangeCatalogues(locale);
    elm_language_set(locale.c_str());
    Settle();
}

void Page::SetTextSize(double factor)
{
    WatchPort::SetTextSize(factor);
    Settle();
    ScrollToTop();
}

void Page::SetHighContrast(bool isHigh)
{
    WatchPort::SetHighContrast(isHigh);
}

void Page::UseCatalogues()
{
    gTranslation.reset();
}

void Page::Settle()
{
    Clock::Flush();
    evas_smart_objects_calculate(evas_object_evas_get(mWindow));
}

void Page::SetTranslation(const std::string& text)
{
    gTranslation = text;
    SetLanguage("en");
}

void Page::SetArrowVisible(bool visible)
{
    mView->SetArrowVisible(visible);
}

void Page::SetColorTable(const std::string& file)
{
    uxt_theme_set_color_table(uxt_theme_add_color_table(file.c_str()));
}

void Page::SetFontTable(const std::string& file)
{
    uxt_theme_set_font_table(uxt_theme_add_font_table(file.c_str()));
}

void Page::UseOwnTables()
{
    const std::string table = Resource("tables/com.velmora.qivo-app_");
    SetColorTable(table + "ChangeableColorTable.xml");
    SetFontTable(table + "FontInfoTable.xml");
}

void Page::TurnBezel(int detents)
{
    Toolkit::TurnWheel(detents);
    Clock::Flush();
}

void Page::Touch(int y)
{
    Evas* canvas = evas_object_evas_get(mWindow);
    evas_event_feed_mouse_move(canvas, mSide / 2, y, mTime, nullptr);
    evas_event_feed_mouse_down(canvas, 1, EVAS_BUTTON_NONE, mTime, nullptr);
}

void Page::DragTo(int y, int sideways)
{
    Clock::Advance(1.0 / 60);
    mTime += 17;
    evas_event_feed_mouse_move(evas_object_evas_get(mWindow), mSide / 2 + sideways, y, mTime,
                               nullptr);
}

void Page::Release()
{
    evas_event_feed_mouse_up(evas_object_evas_get(mWindow), 1, EVAS_BUTTON_NONE, mTime, nullptr);
}

void Page::BringToMiddle(int y)
{
    // The first scroll appends the pad, and only then the page is as long as it gets.
    for (int pass = 0; pass < 2; ++pass)
    {
        int before = ScrolledBy();
        int target = std::clamp(before + y - mSide / 2, 0, End());
        elm_scroller_region_show(mScroller, 0, target, mSide, mSide);
        Settle();
        y -= ScrolledBy() - before;
    }
}

void Page::ScrollToTop()
{
    elm_scroller_region_show(mScroller, 0, 0, mSide, mSide);
    Settle();
}

int Page::ScrolledBy() const
{
    int top = 0;
    elm_scroller_region_get(mScroller, nullptr, &top, nullptr, nullptr);
    return top;
}

int Page::End() const
{
    int height = 0;
    elm_scroller_child_size_get(mScroller, nullptr, &height);
    return std::max(0, height - mSide);
}

std::vector<Box> Page::Lines() const
{
    const Evas_Object* text = Part("help_text");
    const Box block = BoxOf(text);
    std::vector<Box> lines;
    Box line{};
    while (evas_object_textblock_line_number_geometry_get(
        text, static_cast<int>(lines.size()), &line.left, &line.top, &line.right, &line.bottom))
        lines.push_back({block.left + line.left, block.top + line.top,
                         block.left + line.left + line.right, block.top + line.top + line.bottom});
    return lines;
}

std::vector<Box> Page::Glyphs() const
{
    Evas_Object* text = Part("help_text");
    const Box block = BoxOf(text);
    std::vector<Box> glyphs;
    Evas_Textblock_Cursor* cursor = evas_object_textblock_cursor_new(text);
    do
    {
        Eina_Rectangle place{};
        evas_textblock_cursor_char_geometry_get(cursor, &place.x, &place.y, &place.w, &place.h);
        const int left = block.left + place.x;
        const int top = block.top + place.y;
        glyphs.push_back({left, top, left + place.w, top + place.h});
    } while (evas_textblock_cursor_cluster_next(cursor));
    evas_textblock_cursor_free(cursor);
    return glyphs;
}

Box Page::PartBox(const char* part) const
{
    return BoxOf(Part(part));
}

Evas_Object* Page::Part(const char* part) const
{
    // What is scrolled moves only with the layout's next calculation.
    evas_smart_objects_calculate(evas_object_evas_get(mWindow));
    return const_cast<Evas_Object*>(edje_object_part_object_get(elm_layout_edje_get(mPage), part));
}

Evas_Object* Page::ImageIn(const char* part, const char* image) const
{
    Evas_Object* holder = elm_object_part_content_get(mPage, part);
    return const_cast<Evas_Object*>(
        edje_object_part_object_get(elm_image_object_get(holder), image));
}

Picture Page::Look() const
{
    Ecore_Evas* screen = ecore_evas_ecore_evas_get(evas_object_evas_get(mWindow));
    ecore_evas_manual_render(screen);
    return Picture(static_cast<const uint32_t*>(ecore_evas_buffer_pixels_get(screen)), mSide);
}
