#include "body/Body.h"
#include "common/Program.h"

int main(int argumentCount, char** arguments)
{
    return RunProgram(argumentCount, arguments, {"screen", "size", "side", "title"},
                      [](const Options& options)
                      {
                          Body body(options);
                          elm_run();
                          return body.HasLostScreen() ? EXIT_FAILURE : EXIT_SUCCESS;
                      });
}
