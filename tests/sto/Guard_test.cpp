#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <thread>

#include "Fakes.h"

namespace Trel::Lib {

// Looks at a lock from inside an operation that holds it.
struct SharedMutexStandardPeer {
  static std::uint32_t state(SharedMutexStandard& lock) {
    const std::lock_guard guard(lock.mutex);
    return lock.state;
  }
  static constexpr std::uint32_t kWriter = SharedMutexStandard::kWriter;
};

}  // namespace Trel::Lib

namespace Trel::Sto::Test {
namespace {

using Peer = Lib::SharedMutexStandardPeer;

// A store with one stream, and out-parameters that hold something else than their defaults.
class Guarded {
 public:
  Guarded() {
    store.direct_add_element(0, "Nano");
    store.direct_use_element(aspect, 0, "Nano");
  }

  FakeStore store;
  FakeStream& stream = store.stream();
  StreamLeaf leaf;
  Aspect aspect;
  std::vector<Result> out;
  long long start = 5;
  long long end = 5;
  unsigned int count = 5;
  std::vector<unsigned int> ids;
};

// An operation, and how it holds the store: the lock's state while it works.
struct Operation {
  const char* name;
  std::uint32_t state;
  Enum::RETURN_TYPE (*run)(Guarded&);
};

constexpr std::uint32_t kReader = 1;
const Operation kOperations[] = {
    {"add_resource", Peer::kWriter,
     [](Guarded& g) { return g.store.add_resource("/dev/null", g.ids, g.count); }},
    {"get_start", kReader, [](Guarded& g) { return g.store.get_start(g.start); }},
    {"get_end", kReader, [](Guarded& g) { return g.store.get_end(g.end); }},
    {"query_stream", kReader, [](Guarded& g) { return g.store.query_stream(g.leaf, 0); }},
    {"direct_add_element", Peer::kWriter,
     [](Guarded& g) { return g.store.direct_add_element(0, "Builtin"); }},
    {"direct_use_element", kReader,
     [](Guarded& g) { return g.store.direct_use_element(g.aspect, 0, "Nano"); }},
    {"direct_decode_begin", Peer::kWriter,
     [](Guarded& g) { return g.store.direct_decode_begin(0); }},
    {"direct_decode_step", Peer::kWriter,
     [](Guarded& g) { return g.store.direct_decode_step(g.aspect, 0, g.out); }},
    {"direct_decode_end", Peer::kWriter, [](Guarded& g) { return g.store.direct_decode_end(); }},
};

class GuardTest : public testing::TestWithParam<Operation> {
 protected:
  Lib::SharedMutexStandard& cancel_mutex() { return DataStorePeer::cancel_mutex(guarded.store); }
  Lib::SharedMutexStandard& store_mutex() { return DataStorePeer::store_mutex(guarded.store); }

  Guarded guarded;
};

TEST_P(GuardTest, works_under_the_store_s_lock_alone) {
  int seen = 0;
  guarded.stream.on_call = [&](const std::string&) {
    ++seen;
    EXPECT_EQ(Peer::state(cancel_mutex()), 0U);
    EXPECT_EQ(Peer::state(store_mutex()), GetParam().state);
  };
  GetParam().run(guarded);
  EXPECT_TRUE(seen > 0 || std::string(GetParam().name) == "direct_decode_end");
  EXPECT_EQ(Peer::state(cancel_mutex()), 0U);
  EXPECT_EQ(Peer::state(store_mutex()), 0U);
}

TEST_P(GuardTest, is_cancelled_before_it_waits_for_the_store) {
  bool called = false;
  guarded.stream.on_call = [&](const std::string&) { called = true; };
  cancel_mutex().lock();
  store_mutex().lock();
  EXPECT_EQ(GetParam().run(guarded), Enum::RETURN_TYPE_CANCEL);
  store_mutex().unlock();
  cancel_mutex().unlock();
  EXPECT_FALSE(called);
}

TEST_P(GuardTest, passes_the_cancel_lock_beside_other_readers) {
  cancel_mutex().lock_shared();
  EXPECT_NE(GetParam().run(guarded), Enum::RETURN_TYPE_CANCEL);
  EXPECT_EQ(Peer::state(cancel_mutex()), 1U);
  cancel_mutex().unlock_shared();
}

TEST_P(GuardTest, waits_for_a_party_that_has_the_store_alone) {
  store_mutex().lock();
  std::atomic<bool> done = false;
  std::thread other([&] {
    GetParam().run(guarded);
    done = true;
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_FALSE(done);
  cancel_mutex().lock();  // free while the operation waits
  cancel_mutex().unlock();
  store_mutex().unlock();
  other.join();
  EXPECT_TRUE(done);
}

TEST_P(GuardTest, shares_the_store_with_readers_only_when_it_reads) {
  store_mutex().lock_shared();
  std::atomic<bool> done = false;
  std::thread other([&] {
    GetParam().run(guarded);
    done = true;
  });
  if (GetParam().state == kReader) {
    other.join();
    EXPECT_TRUE(done);
    store_mutex().unlock_shared();
  } else {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_FALSE(done);
    store_mutex().unlock_shared();
    other.join();
  }
}

INSTANTIATE_TEST_SUITE_P(Operations, GuardTest, testing::ValuesIn(kOperations),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

TEST(Guard, out_parameters_have_their_defaults_when_an_operation_is_cancelled) {
  Guarded guarded;
  Lib::SharedMutexStandard& mutex = DataStorePeer::cancel_mutex(guarded.store);
  mutex.lock();
  guarded.store.get_start(guarded.start);
  guarded.store.get_end(guarded.end);
  guarded.store.add_resource("/dev/null", guarded.ids, guarded.count);
  mutex.unlock();
  EXPECT_EQ(guarded.start, std::numeric_limits<long long>::max());
  EXPECT_EQ(guarded.end, 0);
  EXPECT_EQ(guarded.count, 0U);
  EXPECT_TRUE(guarded.ids.empty());
}

}  // namespace
}  // namespace Trel::Sto::Test
