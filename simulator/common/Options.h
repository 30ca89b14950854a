#ifndef SIMULATOR_COMMON_OPTIONS_H
#define SIMULATOR_COMMON_OPTIONS_H

#include <map>
#include <set>
#include <string>

/**
 * A command line of "--name value" pairs, which the keeper gives to the watch's own programs.
 *
 * Every function below throws std::invalid_argument with one line that says what is wrong, the
 * value, and what is accepted.
 */
class Options
{
public:
    /** @param names The accepted names, without the dashes. */
    Options(int argumentCount, char** arguments, const std::set<std::string>& names);

    /** The value of a required option. */
    const std::string& Get(const std::string& name) const;

    /** The value of an option, `usual` when it is not given. */
    std::string Get(const std::string& name, const std::string& usual) const;

    /** The side of the watch's screen in pixels: --size, one of 360, 390 and 454. */
    int GetScreenSize() const;

    /** The side of the window in pixels: --side, 1 to 32767; `usual` when it is not given. */
    int GetSide(int usual) const;

private:
    std::map<std::string, std::string> mValues;
};

#endif
