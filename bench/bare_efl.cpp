// The guide's page with the toolkit alone: nothing but the widgets that show it.
//
//   bare-efl HELP_IMAGE ARROW_IMAGE TEXT [SECONDS]
//
// A notch of the wheel moves the page with the toolkit's own motion, which eases out; SECONDS gives
// it another length.

#include <Elementary.h>

#include <cstdlib>
#include <string>

namespace
{
void AddImage(Evas_Object* table, const char* file, int width, int height)
{
    Evas_Object* image = elm_image_add(table);
    elm_image_file_set(image, file, nullptr);
    evas_object_size_hint_min_set(image, width, height);
    evas_object_size_hint_align_set(image, 1.0, 0.3);
    elm_table_pack(table, image, 0, 0, 1, 1);
    evas_object_show(image);
}

Evas_Object* AddScroller(Evas_Object* window)
{
    Evas_Object* scroller = elm_scroller_add(window);
    elm_scroller_policy_set(scroller, ELM_SCROLLER_POLICY_OFF, ELM_SCROLLER_POLICY_OFF);
    evas_object_size_hint_weight_set(scroller, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(window, scroller);
    evas_object_show(scroller);
    return scroller;
}

void FillPage(Evas_Object* scroller, char** argv)
{
    Evas_Object* box = elm_box_add(scroller);
    elm_object_content_set(scroller, box);
    Evas_Object* images = elm_table_add(box);
    AddImage(images, argv[1], 360, 246);
    AddImage(images, argv[2], 96, 96);
    elm_box_pack_end(box, images);
    evas_object_show(images);
    Evas_Object* label = elm_label_add(box);
    elm_label_line_wrap_set(label, ELM_WRAP_MIXED);
    elm_label_wrap_width_set(label, 260);
    const std::string style = "<color=#ffffff font_size=28 align=center>";
    elm_object_text_set(label, (style + argv[3]).c_str());
    elm_box_pack_end(box, label);
    evas_object_show(label);
    evas_object_show(box);
}

Evas_Object* AddWindow()
{
    Evas_Object* window = elm_win_add(nullptr, "bare-efl", ELM_WIN_BASIC);
    elm_win_autodel_set(window, EINA_TRUE);
    Evas_Object* background = elm_bg_add(window);
    elm_bg_color_set(background, 0, 0, 0);
    evas_object_size_hint_weight_set(background, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(window, background);
    evas_object_show(background);
    return window;
}
} // namespace

int main(int argc, char** argv)
{
    if (argc < 4 || argc > 5 || elm_init(1, argv) == 0)
        return 2;
    if (argc == 5)
        elm_config_scroll_bring_in_scroll_friction_set(std::atof(argv[4]));
    elm_policy_set(ELM_POLICY_QUIT, ELM_POLICY_QUIT_LAST_WINDOW_CLOSED);
    Evas_Object* window = AddWindow();
    FillPage(AddScroller(window), argv);
    evas_object_resize(window, 360, 360);
    evas_object_show(window);
    elm_run();
    elm_shutdown();
    return 0;
}
