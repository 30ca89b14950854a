#ifndef TESTS_CONTRACT_WALKS_DEATH_H
#define TESTS_CONTRACT_WALKS_DEATH_H

#include <functional>
#include <string>

/**
 * What is known of a process that dies in the middle of a random walk: by a signal, by an abort, by
 * a sanitizer's finding, or ended by whoever would not wait any longer.
 */
namespace Death
{

/** From now on the process tells on standard error, when it dies, what SetLastWords() said last. */
void Watch();

/** What is told when the process dies; at most 200 bytes of it are kept. */
void SetLastWords(const std::string& words);

/**
 * What ask returns, in a process of its own, whose standard error nobody sees.
 *
 * When that process dies, or does not end within 20 s, a sentence that says so.
 */
std::string AskInChild(const std::function<std::string()>& ask);

} // namespace Death

#endif
