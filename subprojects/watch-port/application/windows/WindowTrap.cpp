#include "application/windows/WindowTrap.h"

namespace WatchPort
{

Elm_Win_Trap& WindowTrap()
{
    static Elm_Win_Trap trap = {};
    trap.version = ELM_WIN_TRAP_VERSION;
    elm_win_trap_set(&trap);
    return trap;
}

} // namespace WatchPort
