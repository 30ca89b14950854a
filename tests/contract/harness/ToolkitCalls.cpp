// The linker sends every call of the toolkit that the list names here first.

#include "harness/Recorder.h"
#include <Elementary.h>
#include <libintl.h>

#define DECLARE(R, name, ...)                                                                      \
    extern "C" R __real_##name(__VA_ARGS__);                                                       \
    extern "C" R __wrap_##name(__VA_ARGS__);

#define CALL1(R, name, A)                                                                          \
    DECLARE(R, name, A)                                                                            \
    R __wrap_##name(A a)                                                                           \
    {                                                                                              \
        return Recorder::Pass(#name, __real_##name, a);                                            \
    }
#define CALL2(R, name, A, B)                                                                       \
    DECLARE(R, name, A, B)                                                                         \
    R __wrap_##name(A a, B b)                                                                      \
    {                                                                                              \
        return Recorder::Pass(#name, __real_##name, a, b);                                         \
    }
#define CALL3(R, name, A, B, C)                                                                    \
    DECLARE(R, name, A, B, C)                                                                      \
    R __wrap_##name(A a, B b, C c)                                                                 \
    {                                                                                              \
        return Recorder::Pass(#name, __real_##name, a, b, c);                                      \
    }
#define CALL4(R, name, A, B, C, D)                                                                 \
    DECLARE(R, name, A, B, C, D)                                                                   \
    R __wrap_##name(A a, B b, C c, D d)                                                            \
    {                                                                                              \
        return Recorder::Pass(#name, __real_##name, a, b, c, d);                                   \
    }
#define CALL6(R, name, A, B, C, D, E, F)                                                           \
    DECLARE(R, name, A, B, C, D, E, F)                                                             \
    R __wrap_##name(A a, B b, C c, D d, E e, F f)                                                  \
    {                                                                                              \
        return Recorder::Pass(#name, __real_##name, a, b, c, d, e, f);                             \
    }
#define CALL7(R, name, A, B, C, D, E, F, G)                                                        \
    DECLARE(R, name, A, B, C, D, E, F, G)                                                          \
    R __wrap_##name(A a, B b, C c, D d, E e, F f, G g)                                             \
    {                                                                                              \
        return Recorder::Pass(#name, __real_##name, a, b, c, d, e, f, g);                          \
    }

#include "harness/Calls.def"
