#ifndef SIMULATOR_COMMON_PI_H
#define SIMULATOR_COMMON_PI_H

constexpr double kPi = 3.14159265358979323846;

#endif
