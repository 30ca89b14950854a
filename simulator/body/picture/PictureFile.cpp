#include "body/picture/PictureFile.h"

#include "body/picture/WatchPicture.h"

#include <Ecore_Evas.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <stdexcept>
#include <string_view>

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

// The toolkit does not report a disk that is full at the end.
bool IsWhole(const std::string& file)
{
    constexpr std::string_view kEnd("IEND\xae\x42\x60\x82", 8);
    std::ifstream stream(file, std::ios::binary);
    stream.seekg(-static_cast<std::streamoff>(kEnd.size()), std::ios::end);
    std::string end(kEnd.size(), '\0');
    stream.read(end.data(), static_cast<std::streamsize>(end.size()));
    return stream && end == kEnd;
}

Canvas Draw(int side, const WatchState& state, const NestedScreen& screen)
{
    const int size = screen.GetSize();
    Canvas canvas = NewCanvas(side);
    WatchPicture picture(ecore_evas_get(canvas.get()), Layout(size, side, side),
                         WatchPicture::Kind::Alone);
    picture.Show(state);
    picture.ShowScreen(screen.GetPixels(), {0, 0, size, size});
    ecore_evas_manual_render(canvas.get());
    return canvas;
}

Evas_Object* AddImage(Evas* canvas, Ecore_Evas* drawn, int side)
{
    Evas_Object* image = evas_object_image_add(canvas);
    evas_object_image_size_set(image, side, side);
    evas_object_image_alpha_set(image, EINA_TRUE);
    evas_object_image_data_copy_set(image, const_cast<void*>(ecore_evas_buffer_pixels_get(drawn)));
    return image;
}
} // namespace

void SavePicture(const std::string& file, const WatchState& state, const NestedScreen& screen)
{
    const std::filesystem::path path(file);
    if (!path.is_absolute() || path.extension() != ".png")
        throw std::runtime_error("\"" + file + "\" is not an absolute path of a .png file");
    const int side = Layout::GetUsualSide(screen.GetSize());
    const Canvas canvas = Draw(side, state, screen);
    Evas_Object* image = AddImage(ecore_evas_get(canvas.get()), canvas.get(), side);
    // Beside the file, so that a failed write leaves the old file alone.
    const std::string part =
        path.parent_path() / (".qivo-watch-" + std::to_string(std::random_device{}()) + ".png");
    std::error_code error;
    const bool isSaved =
        evas_object_image_save(image, part.c_str(), nullptr, "compress=6") && IsWhole(part);
    if (isSaved)
        std::filesystem::rename(part, file, error);
    if (isSaved && !error)
        return;
    std::filesystem::remove(part, error);
    throw std::runtime_error("\"" + file + "\" cannot be written");
}

Evas_Object* AddPicture(Evas* canvas, int side, const WatchState& state, const NestedScreen& screen)
{
    return AddImage(canvas, Draw(side, state, screen).get(), side);
}
