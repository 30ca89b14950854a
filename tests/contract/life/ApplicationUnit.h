#ifndef TESTS_CONTRACT_LIFE_APPLICATIONUNIT_H
#define TESTS_CONTRACT_LIFE_APPLICATIONUNIT_H

/**
 * Makes the process as good as new for the next life: the application's unit remembers for the
 * life of the process that it has had its first launch request.
 */
void ForgetTheFirstRequest();

#endif
