#include "Platform.h"

unsigned tqz_CurrentApplicationObject() { return tqApplObject::currentOid(); }
