#include "library/Lib_CyclicBuffer.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdlib>
#include <deque>
#include <random>
#include <string>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define TREL_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TREL_ADDRESS_SANITIZER 1
#endif
#endif

namespace {

// Shows what a ring keeps to itself.
class Ring : public Trel::Lib::CyclicBuffer {
 public:
  using CyclicBuffer::buffer;
  using CyclicBuffer::capacity;
  using CyclicBuffer::CyclicBuffer;
  using CyclicBuffer::mask;
  using CyclicBuffer::read;
  using CyclicBuffer::write;

  std::size_t put(const std::string& text) { return push(text.data(), text.size()); }
  std::string take(std::size_t length) {
    std::string text(length, '?');
    text.resize(pull(text.data(), length));
    return text;
  }
  std::string memory() const { return {buffer, buffer + capacity}; }
};

TEST(CyclicBuffer, the_capacity_is_a_power_of_two_of_zero_bytes) {
  for (std::size_t bits = 0; bits <= 12; ++bits) {
    const Ring ring(bits);
    EXPECT_EQ(ring.capacity, std::size_t{1} << bits);
    EXPECT_EQ(ring.mask, ring.capacity - 1);
    EXPECT_EQ(ring.space(), ring.capacity);
    EXPECT_EQ(ring.size(), 0u);
    EXPECT_EQ(ring.memory(), std::string(ring.capacity, '\0'));
  }
}

TEST(CyclicBuffer, a_power_out_of_range_means_30) {
  EXPECT_EQ(Ring(30).capacity, std::size_t{1} << 30);
  EXPECT_EQ(Ring(31).capacity, std::size_t{1} << 30);
  EXPECT_EQ(Ring(64).capacity, std::size_t{1} << 30);
  EXPECT_EQ(Ring(static_cast<std::size_t>(-1)).capacity, std::size_t{1} << 30);
  EXPECT_EQ(Ring(29).capacity, std::size_t{1} << 29);
}

TEST(CyclicBuffer, a_push_takes_what_fits_and_says_how_much) {
  Ring ring(3);
  EXPECT_EQ(ring.put("abcde"), 5u);
  EXPECT_EQ(ring.space(), 3u);
  EXPECT_EQ(ring.put("fghij"), 3u);
  EXPECT_EQ(ring.space(), 0u);
  EXPECT_EQ(ring.memory(), "abcdefgh");
}

TEST(CyclicBuffer, a_push_into_a_full_ring_changes_nothing) {
  Ring ring(2);
  ring.put("abcd");
  EXPECT_EQ(ring.put("x"), 0u);
  EXPECT_EQ(ring.memory(), "abcd");
  EXPECT_EQ(ring.write, 4u);
  EXPECT_EQ(ring.read, 0u);
}

TEST(CyclicBuffer, a_push_across_the_end_of_the_memory_lands_in_two_pieces) {
  Ring ring(3);
  ring.put("abcdef");
  EXPECT_EQ(ring.take(4), "abcd");
  EXPECT_EQ(ring.put("ghijk"), 5u);
  EXPECT_EQ(ring.memory(), "ijkdefgh");
  EXPECT_EQ(ring.take(8), "efghijk");
}

TEST(CyclicBuffer, a_push_across_the_end_stops_at_the_oldest_byte) {
  Ring ring(3);
  ring.put("abcdef");
  ring.take(4);
  EXPECT_EQ(ring.put("ghijklmn"), 6u);
  EXPECT_EQ(ring.space(), 0u);
  EXPECT_EQ(ring.memory(), "ijklefgh");
}

TEST(CyclicBuffer, a_push_behind_the_wrap_stops_at_the_oldest_byte) {
  Ring ring(3);
  ring.put("abcdefgh");
  ring.take(4);
  EXPECT_EQ(ring.put("ij"), 2u);
  EXPECT_EQ(ring.put("klm"), 2u);
  EXPECT_EQ(ring.memory(), "ijklefgh");
}

TEST(CyclicBuffer, an_empty_ring_away_from_the_start_takes_its_whole_capacity) {
  Ring ring(3);
  ring.put("abc");
  ring.take(3);
  EXPECT_EQ(ring.put("01234567"), 8u);
  EXPECT_EQ(ring.memory(), "56701234");
}

TEST(CyclicBuffer, nothing_pushed_or_pulled_needs_no_memory) {
  Ring ring(3);
  EXPECT_EQ(ring.push(nullptr, 0), 0u);
  EXPECT_EQ(ring.pull(nullptr, 0), 0u);
  EXPECT_EQ(ring.pull(nullptr, 5), 0u);
  ring.put("abcdef");
  EXPECT_EQ(ring.push(nullptr, 0), 0u);
  EXPECT_EQ(ring.size(), 6u);
}

TEST(CyclicBuffer, the_counters_run_on_through_their_own_overflow) {
  Ring ring(3);
  ring.write = ring.read = static_cast<std::size_t>(-3);
  EXPECT_EQ(ring.put("abcdefghi"), 8u);
  EXPECT_EQ(ring.write, 5u);
  EXPECT_EQ(ring.space(), 0u);
  EXPECT_EQ(ring.put("x"), 0u);
  EXPECT_EQ(ring.take(9), "abcdefgh");
  EXPECT_EQ(ring.space(), 8u);
}

TEST(CyclicBuffer, whatever_goes_in_comes_out_in_order) {
  const unsigned seed = 77;
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  Ring ring(5);
  std::deque<char> expected;
  for (int round = 0; round < 20000; ++round) {
    std::string text(random() % 40, ' ');
    for (char& c : text) c = static_cast<char>(random());
    const std::size_t space = ring.space();
    const std::size_t taken = ring.put(text);
    ASSERT_EQ(taken, std::min(space, text.size()));
    expected.insert(expected.end(), text.begin(), text.begin() + taken);
    ASSERT_EQ(ring.size(), expected.size());

    const std::string out = ring.take(random() % 40);
    ASSERT_EQ(out, std::string(expected.begin(), expected.begin() + out.size()));
    expected.erase(expected.begin(), expected.begin() + out.size());
  }
}

[[maybe_unused]] void make_ring_in_little_memory() {
  const rlimit limit{1 << 28, 1 << 28};
  setrlimit(RLIMIT_AS, &limit);
  const Ring ring(30);
}

TEST(CyclicBufferDeathTest, without_memory_the_program_stops) {
#ifdef TREL_ADDRESS_SANITIZER
  GTEST_SKIP() << "the address sanitizer ends the program before a failed allocation returns";
#else
  EXPECT_DEATH(make_ring_in_little_memory(),
               "Test : buffer != NULL\nFile : library/Lib_CyclicBuffer\n"
               "Func : Trel::Lib::CyclicBuffer::CyclicBuffer\\(std::size_t\\)\n");
#endif
}

TEST(CyclicBufferDeathTest, a_ring_whose_memory_is_gone_does_not_end_quietly) {
  EXPECT_DEATH(
      {
        Ring ring(3);
        std::free(ring.buffer);
        ring.buffer = nullptr;
      },
      "Test : buffer != NULL\nFile : library/Lib_CyclicBuffer\n");
}

}  // namespace
