#ifndef SIMULATOR_COMMON_COMPLAINT_H
#define SIMULATOR_COMMON_COMPLAINT_H

#include <string>

/** Writes one line to standard error, after the program's name; line breaks become spaces. */
void Complain(const std::string& text);

#endif
