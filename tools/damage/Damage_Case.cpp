#include "damage/Damage_Case.h"

#include <algorithm>
#include <random>

#include "support/Support_Damage.h"

namespace Trel::Damage {

namespace {

using Support::Bytes;

constexpr std::size_t kRandomCuts = 2000;
constexpr std::size_t kFlips = 5000;
constexpr std::size_t kRearrangements = 2000;
constexpr std::size_t kJoins = 500;

// Numbers that are the same with every standard library.
class Random {
 public:
  Random(std::uint64_t seed, std::size_t which, Kind kind, std::size_t number) {
    std::seed_seq sequence{seed, seed >> 32, std::uint64_t{which}, static_cast<std::uint64_t>(kind),
                           std::uint64_t{number}};
    engine_.seed(sequence);
  }

  // 0 to end - 1.
  std::size_t below(std::size_t end) { return static_cast<std::size_t>(engine_() % end); }

 private:
  std::mt19937_64 engine_;
};

Bytes slice(const Bytes& bytes, std::size_t first, std::size_t last) {
  return Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(first),
               bytes.begin() + static_cast<std::ptrdiff_t>(last));
}

Bytes slice(const Bytes& bytes, const Part& part) {
  return slice(bytes, part.offset, part.end());
}

// One cut on, ahead of and behind every border; the first border is the beginning of the file.
std::size_t count_borders(const Subject& subject) {
  return 3 * (subject.parts.size() + 1);
}

Bytes cut(const Subject& subject, std::size_t number, Random& random) {
  const std::size_t size = subject.bytes.size();
  if (number >= count_borders(subject)) return slice(subject.bytes, 0, random.below(size));
  const std::size_t index = number / 3;
  const std::size_t border = index == 0 ? 0 : subject.parts[index - 1].end();
  const std::size_t beside = border + number % 3;  // one more than the place of the cut
  return slice(subject.bytes, 0, std::min(size, beside == 0 ? 0 : beside - 1));
}

// Behind `first` alone.
Bytes flip(const Subject& subject, std::size_t first, Random& random) {
  Bytes bytes = subject.bytes;
  for (std::size_t count = 1 + random.below(100); count > 0; --count) {
    const std::size_t offset = first + random.below(bytes.size() - first);
    bytes[offset] ^= static_cast<unsigned char>(1U << random.below(8));
  }
  return bytes;
}

Bytes rearrange(const Subject& subject, Random& random) {
  std::vector<std::size_t> order(subject.parts.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  for (std::size_t count = 1 + random.below(8); count > 0 && !order.empty(); --count) {
    const std::size_t place = random.below(order.size());
    const auto at = order.begin() + static_cast<std::ptrdiff_t>(place);
    switch (random.below(3)) {
      case 0:
        order.erase(at);
        break;
      case 1:
        order.insert(at, *at);
        break;
      default:
        std::swap(order[place], order[random.below(order.size())]);
        break;
    }
  }
  Bytes bytes;
  for (const std::size_t part : order) {
    const Bytes copy = slice(subject.bytes, subject.parts[part]);
    bytes.insert(bytes.end(), copy.begin(), copy.end());
  }
  return bytes;
}

// The place where a file is parted: a border, or anywhere.
std::size_t place_to_part(const Subject& subject, Random& random) {
  if (random.below(2) == 0) return random.below(subject.bytes.size() + 1);
  return subject.parts[random.below(subject.parts.size())].offset;
}

Bytes join(const std::vector<Subject>& subjects, std::size_t which, std::size_t number,
           Random& random) {
  const Subject& first = subjects[which];
  const Subject& second = subjects[number % subjects.size()];
  if (number < subjects.size()) return Support::join({first.bytes, second.bytes});
  const std::size_t end = random.below(4) == 0 ? first.bytes.size() : place_to_part(first, random);
  const std::size_t start = random.below(4) == 0 ? 0 : place_to_part(second, random);
  return Support::join(
      {slice(first.bytes, 0, end), slice(second.bytes, start, second.bytes.size())});
}

}  // namespace

const char* name_of(Kind kind) {
  switch (kind) {
    case Kind::cut:
      return "cut";
    case Kind::flip:
      return "flip";
    case Kind::mended:
      return "mended";
    case Kind::rearrange:
      return "rearrange";
    default:
      return "join";
  }
}

std::size_t count_cases(Kind kind, const Subject& subject) {
  switch (kind) {
    case Kind::cut:
      return count_borders(subject) + kRandomCuts;
    case Kind::flip:
    case Kind::mended:
      return kFlips;
    case Kind::rearrange:
      return kRearrangements;
    default:
      return kJoins;
  }
}

Bytes make_case(const std::vector<Subject>& subjects, std::size_t which, Kind kind,
                std::size_t number, std::uint64_t seed) {
  const Subject& subject = subjects[which];
  Random random(seed, which, kind, number);
  switch (kind) {
    case Kind::cut:
      return cut(subject, number, random);
    case Kind::flip:
      return flip(subject, 0, random);
    case Kind::mended: {
      // Half of them spare the headers: what is wrong there hides what comes behind.
      Bytes bytes = flip(subject, random.below(2) == 0 ? 0 : subject.payload, random);
      mend(bytes, subject);
      return bytes;
    }
    case Kind::rearrange:
      return rearrange(subject, random);
    default:
      return join(subjects, which, number, random);
  }
}

}  // namespace Trel::Damage
