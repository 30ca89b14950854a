#ifndef TESTS_SUPPORT_PRECOMPILED_H
#define TESTS_SUPPORT_PRECOMPILED_H

// What takes a compiler longest to read; each source still includes what it uses.
#include <Elementary.h>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>
#include <vector>

#endif
