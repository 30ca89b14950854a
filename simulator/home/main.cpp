#include "common/Program.h"
#include "home/Home.h"

int main(int argumentCount, char** arguments)
{
    return RunProgram(argumentCount, arguments, {"size"},
                      [](const Options& options)
                      {
                          const Home home(options);
                          elm_run();
                          return EXIT_SUCCESS;
                      });
}
