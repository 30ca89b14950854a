#include "common/Complaint.h"

#include <algorithm>
#include <cerrno>
#include <iostream>

void Complain(const std::string& text)
{
    std::string line = text;
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::cerr << program_invocation_short_name << ": " << line << std::endl;
}
