// The string suite once more, compiled as C++20, which tries every comparison both ways round.
#include "tqString_test.cpp"
