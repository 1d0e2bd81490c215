// All enumerations for the tests, as data: what their tables list, and their functions behind plain
// pointers, so that one loop can walk them.
#pragma once

#include <string>
#include <vector>

namespace Trel::Enum::Test {

// A line of a table, as far as it is the same in every form.
struct Line {
  std::string tag;
  unsigned int number;
};

// What the conversions make of one raw number.
struct Outcome {
  int cast;
  int cast_t;
  const char* cast_string;
  const char* cast_verbose;
  bool set;
  int target;  // of Set
};

// The conversions from one integer type.
struct Conversions {
  std::string type;
  int bits;
  bool is_signed;
  Outcome (*from)(unsigned long long pattern);  // the lowest bits of the pattern are the number

  [[nodiscard]] unsigned long long highest() const {
    return ~0ULL >> (64 - bits + (is_signed ? 1 : 0));
  }
};

// One enumeration. The functions take any number of its width; `parse` gives the success and, in
// `target`, the member.
struct Enumerated {
  std::string name;
  bool dense;
  int bits;
  std::vector<Line> lines;
  std::vector<Conversions> conversions;
  const char* (*GetName)(unsigned int number);
  const char* (*GetTag)(unsigned int number);
  const char* (*GetString)(unsigned int number);
  const char* (*GetVerbose)(unsigned int number);
  const char* (*GetComment)(unsigned int number);
  int (*GetIndex)(unsigned int number);
  double (*GetValue)(unsigned int number);
  bool (*Parse)(unsigned int& target, const char* text);

  [[nodiscard]] unsigned int bound() const { return lines.back().number; }
  [[nodiscard]] unsigned int highest() const { return (1U << bits) - 1; }
  [[nodiscard]] bool has(unsigned long long number) const;
};

// In their order.
const std::vector<Enumerated>& enumerations();

}  // namespace Trel::Enum::Test
