#ifndef TESTS_CONTRACT_FAULTS_WAYS_H
#define TESTS_CONTRACT_FAULTS_WAYS_H

#include <functional>
#include <string>
#include <vector>

/** The ways in which the calls of the toolkit and of the watch can fail. */
namespace Ways
{

struct Way
{
    /** "null", "false", "-1", "not done": what the caller sees. */
    std::string name;

    /** Has the nth next call of this name fail so. */
    std::function<void(const std::string& call, int nth)> arm;
};

struct Call
{
    std::string name;
    std::vector<Way> ways;
};

/** Every call of the one list, each with at least one way or none with a reason. */
const std::vector<Call>& AllCalls();

/** Why a call has no way to fail; empty for one that has. */
std::string WhyItCannotFail(const std::string& call);

} // namespace Ways

#endif
