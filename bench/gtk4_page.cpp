// The guide's page with GTK 4.
//
//   gtk4-page HELP_IMAGE ARROW_IMAGE TEXT

#include <gtk/gtk.h>

#include <algorithm>

namespace
{
// A notch of the wheel moves the page as the guide does: a quarter of the screen, easing out. The
// toolkit itself jumps.
constexpr double kStep = 90;
constexpr double kMotionUs = 300'000;

struct Motion
{
    GtkAdjustment* position;
    double from;
    double to;
    gint64 start;
    guint tick;
};

gboolean TickCB(GtkWidget* /*scroller*/, GdkFrameClock* clock, void* data)
{
    auto* motion = static_cast<Motion*>(data);
    const auto passed = static_cast<double>(gdk_frame_clock_get_frame_time(clock) - motion->start);
    const double left = std::clamp(1 - passed / kMotionUs, 0.0, 1.0);
    gtk_adjustment_set_value(motion->position,
                             motion->to + (motion->from - motion->to) * left * left);
    if (left > 0)
        return G_SOURCE_CONTINUE;
    motion->tick = 0;
    return G_SOURCE_REMOVE;
}

gboolean ScrollCB(GtkEventControllerScroll* wheel, double /*x*/, double notches, void* data)
{
    auto* motion = static_cast<Motion*>(data);
    GtkWidget* scroller = gtk_event_controller_get_widget(GTK_EVENT_CONTROLLER(wheel));
    const double end =
        gtk_adjustment_get_upper(motion->position) - gtk_adjustment_get_page_size(motion->position);
    motion->from = gtk_adjustment_get_value(motion->position);
    motion->to = std::clamp((motion->tick ? motion->to : motion->from) + notches * kStep, 0.0, end);
    motion->start = g_get_monotonic_time();
    if (motion->tick == 0)
        motion->tick = gtk_widget_add_tick_callback(scroller, TickCB, motion, nullptr);
    return TRUE;
}

void MoveByWheel(GtkWidget* scroller)
{
    static Motion sMotion{};
    sMotion.position = gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(scroller));
    GtkEventController* wheel =
        gtk_event_controller_scroll_new(GTK_EVENT_CONTROLLER_SCROLL_VERTICAL);
    gtk_event_controller_set_propagation_phase(wheel, GTK_PHASE_CAPTURE);
    g_signal_connect(wheel, "scroll", G_CALLBACK(ScrollCB), &sMotion);
    gtk_widget_add_controller(scroller, wheel);
}

constexpr char kStyle[] = "window { background: black; } label { color: white; font-size: 28px; }";

GtkWidget* MakeImages(const char* helpFile, const char* arrowFile)
{
    GtkWidget* overlay = gtk_overlay_new();
    GtkWidget* help = gtk_picture_new_for_filename(helpFile);
    gtk_widget_set_size_request(help, 360, 246);
    // A picture would take the size of its file here.
    GtkWidget* arrow = gtk_image_new_from_file(arrowFile);
    gtk_image_set_pixel_size(GTK_IMAGE(arrow), 96);
    gtk_widget_set_halign(arrow, GTK_ALIGN_END);
    gtk_widget_set_valign(arrow, GTK_ALIGN_START);
    gtk_widget_set_margin_top(arrow, 46);
    gtk_overlay_set_child(GTK_OVERLAY(overlay), help);
    gtk_overlay_add_overlay(GTK_OVERLAY(overlay), arrow);
    return overlay;
}

GtkWidget* MakeText(const char* text)
{
    GtkWidget* label = gtk_label_new(text);
    gtk_label_set_wrap(GTK_LABEL(label), TRUE);
    gtk_label_set_justify(GTK_LABEL(label), GTK_JUSTIFY_CENTER);
    gtk_widget_set_margin_start(label, 50);
    gtk_widget_set_margin_end(label, 50);
    gtk_widget_set_margin_bottom(label, 160);
    return label;
}

GtkWidget* MakePage(char** argv)
{
    GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_append(GTK_BOX(box), MakeImages(argv[1], argv[2]));
    gtk_box_append(GTK_BOX(box), MakeText(argv[3]));
    GtkWidget* scroller = gtk_scrolled_window_new();
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_EXTERNAL,
                                   GTK_POLICY_EXTERNAL);
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), box);
    MoveByWheel(scroller);
    return scroller;
}

void ApplyStyle(GtkWidget* window)
{
    GtkCssProvider* style = gtk_css_provider_new();
    gtk_css_provider_load_from_data(style, kStyle, -1);
    gtk_style_context_add_provider_for_display(gtk_widget_get_display(window),
                                               GTK_STYLE_PROVIDER(style),
                                               GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(style);
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 4 || !gtk_init_check())
        return 2;
    GtkWidget* window = gtk_window_new();
    ApplyStyle(window);
    gtk_window_set_decorated(GTK_WINDOW(window), FALSE);
    gtk_window_set_default_size(GTK_WINDOW(window), 360, 360);
    gtk_window_set_child(GTK_WINDOW(window), MakePage(argv));
    gtk_window_present(GTK_WINDOW(window));
    GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
    g_main_loop_run(loop);
    return 0;
}
