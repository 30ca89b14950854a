#ifndef WATCH_PORT_SUPPORT_QUIET_LOG_H
#define WATCH_PORT_SUPPORT_QUIET_LOG_H

#include <Eina.h>

/**
 * Silences a log domain of the toolkit below critical, while it lives: Eldbus reports a machine
 * without a system bus, or without a service, as an error.
 */
class QuietLog
{
public:
    /** @param domain A registered domain's name, which must outlive the object. */
    explicit QuietLog(const char* domain)
        : mDomain(domain), mLevel(eina_log_domain_level_get(domain))
    {
        eina_log_domain_level_set(mDomain, EINA_LOG_LEVEL_CRITICAL);
    }
    ~QuietLog() { eina_log_domain_level_set(mDomain, mLevel); }
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;

private:
    const char* const mDomain;
    const int mLevel;
};

#endif
