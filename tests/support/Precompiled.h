#pragma once

// What every test file reads; all test programs share one precompiled copy.

#include "base/Precompiled.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
