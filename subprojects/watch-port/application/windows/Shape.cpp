#include "application/windows/Shape.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace WatchPort
{

bool IsShape(const Evas_Object* object)
{
    constexpr std::string_view kShapes[] = {"rectangle", "line",      "polygon",  "image",
                                            "text",      "textblock", "textgrid", "vectors"};
    const char* const type = evas_object_type_get(object);
    return type && std::find(std::begin(kShapes), std::end(kShapes), type) != std::end(kShapes);
}

} // namespace WatchPort
