#include <gmock/gmock.h>

// The linker gives the start-up code this one, and the application's main to __real_main().
extern "C" int __wrap_main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
