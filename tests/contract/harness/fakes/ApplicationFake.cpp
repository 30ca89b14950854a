#include "harness/PlatformState.h"
#include <app_common.h>

extern "C" {

char* app_get_resource_path(void)
{
    const Allocations::Pause pause;
    return Platform::Copy("app_get_resource_path", Platform::ResourceDirectory());
}

char* app_get_data_path(void)
{
    const Allocations::Pause pause;
    return Platform::Copy("app_get_data_path", "/data/of/the/app/");
}

int ui_app_main(int argc, char** argv, ui_app_lifecycle_callback_s* callbacks, void* data)
{
    Recorder::AddCall("ui_app_main", argc, static_cast<const void*>(argv),
                      static_cast<const void*>(callbacks), data);
    std::intptr_t answer = 0;
    if (Recorder::TakeAnswer("ui_app_main", answer))
    {
        return static_cast<int>(answer);
    }
    return Platform::sMainLoop ? Platform::sMainLoop(callbacks, data) : 0;
}

void ui_app_exit(void)
{
    Recorder::AddCall("ui_app_exit");
    Platform::IsToldToFail("ui_app_exit");
}

} // extern "C"
