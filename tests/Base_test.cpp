#include "Base.h"

#include "Trigger.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

std::string story;       // what happened, in order
bool questions = false;  // told too

// An object that tells when it is asked for its class, and of its end.
struct Thing : tqBase {
  char name;

  explicit Thing(char is, int withOid = 1) : tqBase(withOid), name(is) {}
  ~Thing() override { story += std::string{'~', name, ' '}; }
  int isA(unsigned id) const override {
    if (questions) story += "isA ";
    return tqBase::isA(id);
  }
};

// A trigger that tells what it is fired for ("=": the object twice, "-": no other), and acts.
struct Watcher : tqTrigger {
  char name;
  int answer = 1;
  std::function<void(tqBase*)> act;

  Watcher(char is, int event, tqBase* watched, TriggerType type = TRIGGER_PLAIN)
      : tqTrigger(type), name(is) {
    const unsigned base = 0;
    addEvent(event), setObjectTypes(&base, 1), addObject(watched);
  }
  void fire(tqBase* object, tqBase* other, int event) override {
    story += std::string{name, other == object ? '=' : '-'} + std::to_string(event) + ' ';
    if (act) act(object);
  }
  int checkMode() const override {
    if (questions) story += "mode ";
    return answer;
  }
};

std::string told(const std::function<void()>& run, bool withQuestions = false) {
  story.clear(), questions = withQuestions;
  run();
  return story;
}

tqBase* follow(const tqBase& from) { return oid_to_base(static_cast<int>(from.oid())); }

TEST(BaseDeathTest, ObjectsAndHandlesDrawOnOneSequenceFrom1OnAndNothingIsThereBefore) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";  // in a fresh process
  const auto run = [] {
    int handle = 0;
    EXPECT_FALSE(tqBase::validated(1, 1) || oid_to_handle(1) || handle_to_oid(&handle));
    EXPECT_FALSE(tqBase::setMapping(1, 2) || tqBase::_tbdList || selectedList);
    tqBase::clearMapping(), tqBase::remove_oid(1), delete_handle_oid(1), delete_handle_ptr(&handle);
    const tqBase none(0), first(1);
    EXPECT_TRUE(none.oid() == 0 && first.oid() == 1);
    for (int twice = 0; twice < 2; ++twice) EXPECT_EQ(make_handle_oid(&handle), 2);
    EXPECT_EQ(tqBase(none).oid(), 3u) << "a copy has an OID of its own";
    tqBase::deleteTBDObjects();
    EXPECT_TRUE(tqBase::_tbdList->ordered() && tqBase::_tbdList->capacity() == 0);
    std::exit(HasFailure() ? 1 : 0);
  };
  EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

TEST(Base, IdentifiersLeadToLiveObjectsAloneAmongManyAndAreNotReused) {
  std::vector<std::unique_ptr<tqBase>> objects(5000);
  std::vector<unsigned> oids;
  for (auto& object : objects) object = std::make_unique<tqBase>(1), oids.push_back(object->oid());
  for (int kept : {1, 16, 5000}) {
    for (std::size_t i = 0; i < objects.size(); ++i) {
      if (i % static_cast<unsigned>(kept) != 0) objects[i].reset();
      ASSERT_EQ(tqBase::validated(oids[i], 1), objects[i].get()) << i << " of 1 in " << kept;
    }
  }
  EXPECT_EQ(tqBase(1).oid(), oids.back() + 1);
  EXPECT_FALSE(oid_to_base(0) || oid_to_base(-1));
}

// Keeps 1 of `outOf` objects of a long row, at random, then destroys most of those, too.
TEST(Base, IdentifiersOfTheFewThatOutliveALongSessionStillLeadToThem) {
  std::mt19937 random(7);
  std::map<unsigned, std::unique_ptr<tqBase>> alive;
  unsigned first = 0, last = 0;
  for (const unsigned outOf : {3u, 16u, 2000u, 1u})
    for (int i = 0; i < 20000; ++i) {
      auto object = std::make_unique<tqBase>(1);
      last = object->oid();
      if (first == 0) first = last;
      if (random() % outOf == 0) alive[last] = std::move(object);
      if (random() % 40 == 0 && !alive.empty()) alive.erase(alive.begin());
    }
  const auto allLead = [&] {
    for (unsigned oid = first; oid <= last; ++oid) {
      const auto found = alive.find(oid);
      if (tqBase::validated(oid, 0) != (found == alive.end() ? nullptr : found->second.get()))
        return false;
    }
    return true;
  };
  EXPECT_TRUE(allLead());
  const unsigned oldest = alive.begin()->first;
  EXPECT_TRUE(tqBase::setMapping(oldest, last));
  for (auto i = std::next(alive.begin()); i != alive.end();)
    i = i->first != last && random() % 50 != 0 ? alive.erase(i) : std::next(i);
  EXPECT_TRUE(allLead());
  EXPECT_EQ(tqBase::validated(oldest, 1), alive[last].get());
  tqBase::clearMapping();
  EXPECT_EQ(tqBase::validated(oldest, 1), alive[oldest].get());
}

TEST(Base, MappingsRedirectLookUpsToTheirEndAndCirclesToNull) {
  tqBase a(1), b(1), c(1);
  EXPECT_TRUE(tqBase::setMapping(a.oid(), b.oid()) && tqBase::setMapping(b.oid(), c.oid()));
  EXPECT_FALSE(tqBase::setMapping(0, 1) || tqBase::setMapping(c.oid() + 1000, 1));
  for (unsigned end : {0u, a.oid(), c.oid(), c.oid() + 1000}) {
    tqBase::setMapping(c.oid(), end);
    EXPECT_EQ(follow(a), end == 0 ? &c : nullptr) << end;
    EXPECT_EQ(tqBase::validated(a.oid(), 0), &a);
  }
  tqBase::setMapping(b.oid(), 0), tqBase::setMapping(b.oid(), 0);
  EXPECT_EQ(follow(a), &b);
  tqBase::setMapping(std::make_unique<tqBase>(1)->oid(),
                     a.oid());  // its end is that of the mapping
  tqBase::clearMapping();
  EXPECT_TRUE(follow(a) == &a && follow(c) == &c);
}

TEST(Base, HandlesLeadBothWaysUntilForgottenAndNullIsGivenANewIdentifierAtEveryCall) {
  int one = 0, two = 0;
  const int first = make_handle_oid(&one), second = make_handle_oid(&two);
  EXPECT_TRUE(oid_to_handle(first) == &one && handle_to_oid(&two) == second);
  for (int twice = 0; twice < 2; ++twice) delete_handle_oid(first), delete_handle_ptr(&two);
  EXPECT_FALSE(handle_to_oid(&one) || handle_to_oid(&two));
  EXPECT_FALSE(oid_to_handle(first) || oid_to_handle(second) || oid_to_base(first));
  for (int again = 1; again < 3; ++again) EXPECT_EQ(make_handle_oid(nullptr), second + again);
  EXPECT_EQ(handle_to_oid(nullptr), 0);
}

TEST(Base, CopiesKnowTheOldestSourceAliveAndShareNothingElse) {
  auto* first = new tqBase(1);
  const Watcher watcher('w', 5, first);
  first->select(0);
  tqBase copy(*first), copyOfCopy(copy);
  EXPECT_TRUE(!copy.isSelected() && !copy.numTriggers() && copyOfCopy.original() == first);
  delete first;
  EXPECT_TRUE(copyOfCopy.original() == &copy && copy.sourceOid() == 0);
}

TEST(Base, SelectingNotifiesOncePerChangeWithOrWithoutAList) {
  for (int withList : {0, 1}) {
    tqBaseList list(0);
    list.ordered(1);
    selectedList = withList ? &list : nullptr;
    Thing a('a'), b('b');
    Watcher watcher('w', 4179, &a);
    watcher.addObject(&b);
    EXPECT_EQ(told([&] { a.select(1), a.select(1), b.select(0), b.select(1); }), "w=4179 ");
    std::make_unique<Thing>('d')->select(0);
    list.append(&a);
    EXPECT_EQ(told([&] { a.unselect(1), a.unselect(1); }), "w=4179 ");
    EXPECT_TRUE(list.count() == 1 + withList && list.item(0) == &a) << "not the last entry went";
    selectedList = nullptr;
  }
}

TEST(Base, ADispatchMakesItsTestsInTheDocumentedOrder) {
  const std::tuple<const char*, int, int, int, const char*, const char*> cases[] = {
      {"heard", 5, 1, 1, "mode isA w=5 ", "isA mode w-5 "},
      {"unheard", 6, 1, 1, "", "isA "},
      {"mode refused", 5, 0, 1, "mode ", "isA mode "},
      {"inactive", 5, 1, 0, "", ""}};
  for (const auto& [label, event, answer, active, own, global] : cases) {
    for (bool isOwn : {true, false}) {
      Thing thing('t');
      Watcher watcher('w', event, isOwn ? &thing : nullptr, TRIGGER_TYPED);
      watcher.answer = answer, watcher.active = active;
      EXPECT_EQ(told([&] { thing.doTrigger(5); }, true), isOwn ? own : global) << label;
    }
  }
}

TEST(BaseDeathTest, AWalkTakesItsLengthOnceAndATriggerTakenOffBeforeItsEndIsFatal) {
  Thing thing('t');
  Watcher a('a', 5, &thing), b('b', 5, &thing), late('l', 5, nullptr);
  late.removeObject(nullptr);
  a.act = [&](tqBase* object) { late.addObject(object); };
  EXPECT_EQ(told([&] { thing.doTrigger(5); }), "a=5 b=5 ");
  a.act = [&](tqBase* object) { late.removeObject(object); };
  EXPECT_EXIT(thing.doTrigger(5), testing::KilledBySignal(SIGABRT),
              "^ProtoList internal error: index 2 out of range\n$");
}

TEST(Base, WhatIsDestroyedMeanwhileLeavesTheQueueAndIsNotQueuedAgain) {
  auto *a = new Thing('a'), *b = new Thing('b'), *c = new Thing('c');
  Watcher watcher('w', 1, c);  // hears everything, the end of c included
  watcher.act = [](tqBase* object) { object->deferredDelete(); };
  for (tqBase* queued : {a, b, a}) queued->deferredDelete();
  EXPECT_EQ(told([&] { delete b, c->doTrigger(5); }), "~b ~a w=5 ~c w=4 ");
}

TEST(Base, AMillionQueuedObjectsGoInTurnWithoutExhaustingTheStack) {
  std::string expected;
  for (int n = 0; n < 1000000; ++n) {
    const char name = static_cast<char>('a' + n % 26);
    (new Thing(name))->deferredDelete();
    expected += {'~', name, ' '};
  }
  EXPECT_TRUE(told(tqBase::deleteTBDObjects) == expected);
}

TEST(Base, ADispatchSkipsWhatIsLeftOnceItsObjectIsDestroyed) {
  Thing other('o');
  const auto nested = [&](tqBase* object) { object->deferredDelete(), other.doTrigger(9); };
  const auto queue = [](tqBase* object) { object->deferredDelete(); };
  const auto destroy = [](tqBase* object) { delete object; };
  const std::tuple<const char*, bool, std::function<void(tqBase*)>, const char*> cases[] = {
      {"queued by its own trigger", true, queue, "f=5 s=5 ~t ~l "},
      {"by a dispatch nested in a callback", true, nested, "f=5 ~t ~l "},
      {"by a callback", true, destroy, "f=5 ~t ~l "},
      {"queued by a global trigger", false, queue, "f-5 s-5 g-5 ~t ~l "},
      {"by a global callback", false, destroy, "f-5 ~t ~l "}};
  for (const auto& [label, isOwn, act, expected] : cases) {
    for (int withOid : {0, 1}) {
      auto *thing = new Thing('t', withOid), *late = new Thing('l');
      tqBase* const watched = isOwn ? thing : nullptr;
      Watcher first('f', 5, watched), second('s', 5, watched), global('g', 5, nullptr);
      first.act = [&, act = act](tqBase* object) { act(object), late->deferredDelete(); };
      EXPECT_EQ(told([&] { thing->doTrigger(5); }), expected) << label << withOid;
    }
  }
}

TEST(Base, ADispatchLeftByAThrowingCallbackIsForgotten) {
  auto* thing = new Thing('t');
  Watcher outer('o', 5, thing), inner('i', 6, thing);
  outer.act = [](tqBase* object) { object->doTrigger(6); };
  inner.act = [](tqBase*) { throw 1; };
  EXPECT_THROW(thing->doTrigger(5), int);
  inner.act = [](tqBase* object) { delete object; };
  EXPECT_EQ(told([&] { thing->doTrigger(5); }), "o=5 i=6 ~t ");
}

TEST(Base, ADestructorUnselectsThenTellsItsTriggersThenEndsTheIdentifierThenLetsGo) {
  auto* object = new tqBase(1);
  const unsigned oid = object->oid();
  Watcher twice('w', 4, object);
  twice.addObject(object);
  object->select(0);
  twice.act = [&](tqBase* dying) {
    EXPECT_TRUE(tqBase::validated(oid, 0) == dying && !dying->isSelected());
  };
  EXPECT_EQ(told([&] { delete object; }), "w=4 w=4 ");
  EXPECT_FALSE(tqBase::validated(oid, 0) || twice.numObjects());
}

}  // namespace
