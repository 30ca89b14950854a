#ifndef SIMULATOR_COMMON_OPTIONS_H
#define SIMULATOR_COMMON_OPTIONS_H

#include <map>
#include <set>
#include <string>

/**
 * A command line of "--name value" pairs, as the watch's own programs take it from the keeper.
 *
 * Every function below throws std::invalid_argument with one line that says what is wrong, which
 * value it has, and what is accepted.
 */
class Options
{
public:
    /** @param names Those that are known, without the dashes; no other one is accepted. */
    Options(int argumentCount, char** arguments, const std::set<std::string>& names);

    /** The value of an option that must be given. */
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
