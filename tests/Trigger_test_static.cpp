#include "Trigger.h"

// A trigger with static storage in a file of its own: it may be made before the library's own
// initialisers run, and is destroyed after main.
tqTrigger staticTrigger(TRIGGER_PLAIN);
extern const tqTriggerList* const listOfStaticTrigger;
const tqTriggerList* const listOfStaticTrigger = all_triggers;
