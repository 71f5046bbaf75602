#include "Warn.h"

#include <gtest/gtest.h>
