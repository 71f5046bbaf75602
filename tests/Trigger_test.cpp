#include "Trigger.h"

#include "Platform.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

extern tqTrigger staticTrigger;
extern const tqTriggerList* const listOfStaticTrigger;

namespace {

const auto killed = testing::KilledBySignal(SIGABRT);

using Queue = std::vector<const tqTrigger*>;
Queue queued(const tqTriggerList* list) {
  return list ? Queue(list->begin(), list->end()) : Queue();
}

using Oids = std::vector<unsigned>;
Oids members(const tqNamedGroup* group) {
  Oids oids;
  for (int i = 0; group && i < group->count(); ++i) oids.push_back(group->memberOid(i));
  return oids;
}

class TriggerTest : public testing::Test {
public:
  tqBase a{1}, b{1};
  ~TriggerTest() override {
    for (tqTriggerList* list : {global_trigger_list, fired_triggers[0], fired_triggers[1],
                                fired_graphics_triggers, deleted_triggers})
      if (list) list->remove_all();
  }
};
using TriggerDeathTest = TriggerTest;

TEST_F(TriggerTest, OneWithStaticStorageInAnotherFileStandsOnTheOneListOfAll) {
  EXPECT_TRUE(all_triggers == listOfStaticTrigger && all_triggers->isMember(&staticTrigger));
}

TEST_F(TriggerTest, ItsTypeIsTheFieldBeforeTheObjectTypes) {
  const tqTrigger trigger(TRIGGER_TYPED);
  const auto* const fields = reinterpret_cast<const unsigned char*>(&trigger.numObjectTypes);
  EXPECT_EQ(fields[-static_cast<int>(sizeof(int))], TRIGGER_TYPED);
}

TEST_F(TriggerTest, TheEventFilterHearsEqualCodesAllOrThoseWithTheBit) {
  using Codes = std::vector<int>;
  const std::tuple<Codes, Codes, Codes> cases[] = {
      {{}, {}, {0, 1, 4, 0x1000}},
      {{5, -7, 5}, {5, -7}, {1, 4, 7, 0x1005}},
      {{9, 1}, {0, 1, -1, 4179}, {}},
      {{0x1000}, {0x1000, 0x1003, 0x3000, -1}, {3, 0x800, 0x2000}},
      {{0x1001}, {0x1001}, {0x1000, 0x1003, 1}}};
  for (const auto& [filter, heard, unheard] : cases) {
    tqTrigger set(TRIGGER_PLAIN), added(TRIGGER_PLAIN);
    set.setEvents(filter.data(), static_cast<int>(filter.size()));
    for (int event : filter) added.addEvent(event);
    for (const tqTrigger* trigger : {&set, &added}) {
      for (int event : heard) EXPECT_EQ(trigger->checkEvent(event), 1) << event;
      for (int event : unheard) EXPECT_EQ(trigger->checkEvent(event), 0) << event;
    }
    EXPECT_EQ(set.numEvents - added.numEvents, filter.size() == 3 ? 1 : 0) << "added once";
    set.setEvents(set.events, -1);
    EXPECT_FALSE(set.numEvents || set.events);
  }
}

TEST_F(TriggerTest, TheObjectFilterTakesBasesAndAllClassesAndRejectsWhenEmpty) {
  const tqNamedGroup group("", 1, 1, 1);
  const std::tuple<Oids, int, int, int> cases[] = {
      {{}, 0, 0, 0}, {{0}, 1, 1, 0}, {{7, 1015}, 0, 1, 0}, {{2000}, 1, 1, 1}};
  tqTrigger trigger(TRIGGER_PLAIN);
  for (const auto& [filter, forBase, forGroup, forNull] : cases) {
    trigger.setObjectTypes(filter.data(), static_cast<int>(filter.size()));
    EXPECT_TRUE(trigger.checkObjectType(&a) == forBase &&
                trigger.checkObjectType(&group) == forGroup &&
                trigger.checkObjectType(nullptr) == forNull);
  }
}

TEST_F(TriggerDeathTest, WatchedObjectsKnowTheirTriggerAndEitherSideLetsGo) {
  tqTrigger trigger(TRIGGER_PLAIN);
  trigger.removeObjectAt(3);
  EXPECT_FALSE(trigger.numObjects() || trigger.object(3));
  for (tqBase* object : {&a, &b, &a}) trigger.addObject(object);
  trigger.removeObject(&a);  // the first entry: the last takes its place
  EXPECT_TRUE(trigger.object(0) == &a && trigger.object(1) == &b && a.numTriggers() == 1);
  EXPECT_EXIT(trigger.object(2), killed, "index 2 out of range");
  EXPECT_EXIT(trigger.removeObjectAt(-1), killed, "index -1 out of range");
  b.addTrigger(&trigger);
  trigger.removeObjectAt(1);
  EXPECT_EQ(b.numTriggers(), 1);
  trigger.removeObject(&b);  // watched no more, but still attached there
  EXPECT_EQ(b.numTriggers(), 0);
  std::make_unique<tqTrigger>(TRIGGER_PLAIN)->addObject(&a);
  EXPECT_TRUE(a.numTriggers() == 1 && a.triggers()->item(0) == &trigger);
}

TEST_F(TriggerDeathTest, RemovingNullEndsInTheRangeErrorUnlessOnlyTheLastEntryGoes) {
  tqTrigger first(TRIGGER_PLAIN), last(TRIGGER_PLAIN);
  first.addObject(nullptr), last.addObject(nullptr), last.removeObject(nullptr);
  last.addObject(nullptr), last.removeObjectAt(0);
  EXPECT_EQ(queued(global_trigger_list), Queue{&first});
  last.addObject(nullptr);
  const char* const message = "^ProtoList internal error: index 1 out of range\n$";
  EXPECT_EXIT(first.removeObject(nullptr), killed, message);
  EXPECT_EXIT(first.removeObjectAt(0), killed, message);
}

TEST_F(TriggerTest, DestroyingOneLeavesItOnTheGraphicsAndDeletedQueuesAlone) {
  tqTrigger stays(TRIGGER_PLAIN);
  auto* plain = new tqTrigger(TRIGGER_PLAIN);
  auto* internal = new tqInternalTrigger(TRIGGER_PLAIN);
  for (tqTrigger* trigger : {plain, &stays, static_cast<tqTrigger*>(internal)})
    trigger->addObject(nullptr), trigger->addObject(nullptr), trigger->fire(&a, &a, 5);
  plain->setDeleted(), internal->deferredDelete();
  EXPECT_FALSE(plain->isActive() || internal->isActive());
  delete plain, tqBase::deleteTBDObjects();
  EXPECT_EQ(queued(global_trigger_list), (Queue{&stays, &stays}));
  EXPECT_EQ(queued(fired_triggers[1]), Queue{&stays});
  EXPECT_EQ(queued(all_triggers), (Queue{&staticTrigger, &stays}));
  EXPECT_EQ(queued(deleted_triggers), Queue{plain});
  EXPECT_EQ(queued(fired_graphics_triggers), Queue{internal});
}

TEST_F(TriggerTest, StandsOnItsQueueOnceHoweverOftenItFires) {
  tqTrigger second(TRIGGER_PLAIN), first(TRIGGER_TYPED);
  tqInternalTrigger internal(TRIGGER_TYPED);
  first.setWhenNotify(NOTIFY_FIRST), first.addEvent(4), second.addEvent(5);
  for (tqTrigger* trigger : {&second, &first, static_cast<tqTrigger*>(&internal)}) {
    trigger->fire(&a, &b, 5), trigger->fire(&b, nullptr, 5), trigger->fire(&a, &a, 5);
    EXPECT_EQ(members(trigger->touchedObjects), (Oids{a.oid(), b.oid(), a.oid()}));
    EXPECT_EQ(members(trigger->triggeredObjects),
              trigger == &second ? Oids() : Oids({b.oid(), 0, a.oid()}));
    EXPECT_EQ(trigger->touchedObjects->autoRemove(), trigger->checkEvent(4) ? 0 : 1);
  }
  EXPECT_TRUE(queued(fired_triggers[0]) == Queue{&first} && fired_triggers[0]->ordered());
  EXPECT_TRUE(queued(fired_triggers[1]) == Queue{&second} && fired_triggers[1]->ordered());
  EXPECT_EQ(queued(fired_graphics_triggers), Queue{&internal});
  EXPECT_EQ(fired_graphics_triggers->ordered(), 1);
}

TEST_F(TriggerTest, NotificationMovesBetweenTheQueuesAndNeverIsRefused) {
  tqTrigger trigger(TRIGGER_PLAIN), other(TRIGGER_PLAIN), none(TRIGGER_TYPED);
  trigger.fire(&a, &a, 5), other.fire(&a, &a, 5);
  trigger.setWhenNotify(NOTIFY_SECOND), trigger.setWhenNotify(NOTIFY_NEVER);
  EXPECT_EQ(queued(fired_triggers[1]), (Queue{&trigger, &other}));
  trigger.setWhenNotify(NOTIFY_FIRST);
  EXPECT_EQ(queued(fired_triggers[0]), Queue{&trigger});
  fired_triggers[0]->remove_all();  // drained without a reset
  trigger.setWhenNotify(NOTIFY_SECOND);
  EXPECT_EQ(queued(fired_triggers[1]), (Queue{&other, &trigger}));
  // Set by hand, an option without a queue leaves the recording.
  for (int option : {2, 3, -1}) {
    none.whenNotify = static_cast<NotificationOption>(option), none.fire(&a, &b, 5);
    EXPECT_EQ(none.fired, 0) << option;
  }
  EXPECT_EQ(none.touchedObjects->count() + none.triggeredObjects->count(), 6);
}

std::vector<std::pair<tqBase*, int>> calls;
void call(tqBase* object, tqTrigger*, int event) { calls.emplace_back(object, event); }

TEST_F(TriggerTest, NoKindFiresWhileOffAndAnImmediateOneOnlyWhileNotMarkedFired) {
  tqTrigger plain(TRIGGER_TYPED);
  tqInternalTrigger internal(TRIGGER_TYPED);
  tqImmediateTrigger immediate(TRIGGER_TYPED);
  immediate.fire(&a, &a, 4);  // without a callback
  immediate.callback = call;
  for (tqTrigger* trigger : std::initializer_list<tqTrigger*>{&plain, &internal, &immediate}) {
    triggers_active = 0, trigger->fire(&a, &a, 5);
    triggers_active = 1, trigger->active = 0, trigger->fire(&a, &a, 6);
    EXPECT_FALSE(trigger->fired || trigger->touchedObjects);
  }
  immediate.active = 1, immediate.fire(&a, &b, 7);
  immediate.fired = 1, immediate.fire(&a, &b, 8);
  EXPECT_EQ(calls, (decltype(calls){{&a, 7}}));
  EXPECT_EQ(immediate.touchedObjects, nullptr);
}

TEST_F(TriggerTest, ACopyOfAFiredTriggerIsMarkedFiredButStandsOnNoQueue) {
  tqTrigger source(TRIGGER_TYPED);
  source.addObject(&a), source.addEvent(5), source.fire(&a, &a, 5);
  tqTrigger copy(source);
  EXPECT_TRUE(copy.fired && copy.type() == TRIGGER_TYPED && queued(fired_triggers[1]).size() == 1);
  EXPECT_TRUE(all_triggers->isMember(&copy) && a.numTriggers() == 1 && copy.sourceOid() == 0);
  EXPECT_TRUE(copy.objects == source.objects && copy.touchedObjects == source.touchedObjects);
  EXPECT_TRUE(copy.events != source.events && copy.checkEvent(5));
  copy.objects = nullptr, copy.touchedObjects = copy.triggeredObjects = nullptr;  // the source's
}

TEST_F(TriggerDeathTest, ADeepCopySharesTheTriggeredGroupAloneAndEndsInTheAbortOfAnObjectList) {
  tqTrigger source(TRIGGER_TYPED);
  source.fire(&a, &b, 5);
  const std::unique_ptr<tqTrigger> copy(static_cast<tqTrigger*>(source.deepCopy()));
  EXPECT_NE(copy->touchedObjects, source.touchedObjects);
  EXPECT_EQ(members(copy->touchedObjects), Oids{a.oid()});
  EXPECT_EQ(copy->triggeredObjects, source.triggeredObjects);
  copy->triggeredObjects = nullptr;
  source.addObject(&a), source.removeObject(&a);
  EXPECT_EXIT(source.deepCopy(), killed, "^$") << "an emptied list";
}

template <class Kind> void expectKind(unsigned id, const std::string& name, unsigned copied) {
  const Kind trigger(TRIGGER_PLAIN);
  EXPECT_TRUE(trigger.classId() == id && trigger.className() == name) << name;
  for (unsigned other : {0u, 1u, 1124u, 1125u, 1126u, 1175u})
    EXPECT_EQ(trigger.isA(other), other == 0 || other == 1124 || other == id) << name << other;
  const std::unique_ptr<tqCopyable> copy(trigger.shallowCopy());
  EXPECT_EQ(static_cast<tqTrigger&>(*copy).classId(), copied);
}

TEST_F(TriggerTest, CopiesKeepTheKindButThatOfAnImmediateTriggerIsAPlainOne) {
  expectKind<tqTrigger>(1124, "Trigger", 1124);
  expectKind<tqApplTrigger>(1125, "ApplicationTrigger", 1125);
  expectKind<tqInternalTrigger>(1126, "InternalTrigger", 1126);
  expectKind<tqImmediateTrigger>(1175, "ImmediateTrigger", 1124);
}

TEST_F(TriggerTest, AnApplicationTriggerFiresByModeAndTheApplicationThatIsCurrent) {
  tqApplObject one;
  tqApplTrigger trigger(TRIGGER_PLAIN);
  EXPECT_EQ(trigger.mode, tqApplTrigger::MODE_ANY_APPL);
  const std::tuple<tqApplObject*, tqApplObject*, std::vector<int>> cases[] = {
      {nullptr, &one, {1, 1, 0, 1}}, {&one, &one, {0, 1, 1, 1}}, {&one, nullptr, {1, 1, 0, 1}}};
  for (const auto& [destination, current, fires] : cases) {
    trigger.setDestAppl(destination), tqApplObject::setCurrent(current);
    for (trigger.mode = 0; trigger.mode < 4; ++trigger.mode)
      EXPECT_EQ(trigger.checkMode(), fires[static_cast<std::size_t>(trigger.mode)]);
  }
}

TEST_F(TriggerTest, SettingACommandDoesNotFreeThePreviousText) {
  tqApplTrigger trigger(TRIGGER_PLAIN);
  trigger.setCommand("zoom");
  const std::unique_ptr<char, void (*)(void*)> previous(trigger.command(), std::free);
  trigger.setCommand(nullptr);
  EXPECT_STREQ(trigger.command(), "");
  EXPECT_STREQ(previous.get(), "zoom");
}

}  // namespace
