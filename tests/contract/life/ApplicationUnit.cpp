// The application's unit itself, for what it keeps where no other unit reaches; it stands in for
// the application's own object in the programs that live more than once.

#include "life/ApplicationUnit.h"

// NOLINTNEXTLINE(bugprone-suspicious-include)
#include "qivo-ui-guide/Application.cpp"

void ForgetTheFirstRequest()
{
    QivoUi::sIsAppControlHandled = false;
}
