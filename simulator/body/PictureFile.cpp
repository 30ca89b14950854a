#include "body/PictureFile.h"

#include "body/WatchPicture.h"

#include <Ecore_Evas.h>
#include <filesystem>
#include <memory>
#include <stdexcept>

namespace
{
struct CanvasDeleter
{
    void operator()(Ecore_Evas* canvas) const { ecore_evas_free(canvas); }
};
using Canvas = std::unique_ptr<Ecore_Evas, CanvasDeleter>;

Canvas NewCanvas(int side)
{
    Canvas canvas(ecore_evas_buffer_new(side, side));
    if (!canvas)
        throw std::runtime_error("no canvas off screen");
    ecore_evas_alpha_set(canvas.get(), EINA_TRUE);
    ecore_evas_manual_render_set(canvas.get(), EINA_TRUE);
    ecore_evas_show(canvas.get());
    return canvas;
}

void Save(Ecore_Evas* canvas, int side, const std::string& file)
{
    Evas_Object* image = evas_object_image_add(ecore_evas_get(canvas));
    evas_object_image_size_set(image, side, side);
    evas_object_image_alpha_set(image, EINA_TRUE);
    evas_object_image_data_copy_set(image, const_cast<void*>(ecore_evas_buffer_pixels_get(canvas)));
    if (!evas_object_image_save(image, file.c_str(), nullptr, "compress=6"))
        throw std::runtime_error("\"" + file + "\" cannot be written");
}
} // namespace

void SavePicture(const std::string& file, const WatchState& state, const NestedScreen& screen)
{
    const std::filesystem::path path(file);
    if (!path.is_absolute() || path.extension() != ".png")
        throw std::runtime_error("\"" + file + "\" is no absolute name of a .png file");
    const int size = screen.GetSize();
    const Layout layout(size, 1);
    const Canvas canvas = NewCanvas(layout.GetWindowSide());
    WatchPicture picture(ecore_evas_get(canvas.get()), layout, WatchPicture::Kind::Alone);
    picture.Show(state);
    picture.ShowScreen(screen.GetPixels(), {0, 0, size, size});
    ecore_evas_manual_render(canvas.get());
    Save(canvas.get(), layout.GetWindowSide(), file);
}
