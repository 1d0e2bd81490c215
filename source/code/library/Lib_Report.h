// The report block of a failed test, and the one macro that stops the program on a bug.
//
// TREL_ASSERT guards invariants that no input can break. It holds in every build type: when the
// condition is false it prints the report block on the standard error stream and aborts. Bad data
// is never a reason to use it.
#pragma once

namespace Trel::Lib {

// Writes the report block to the standard error stream: a rule of 60 asterisks, "Info : " (left out
// when `info` is empty), "Test : ", "File : ", "Func : ", "Line : " with their values, each on its
// own line, and the rule again. Returns 0.
int report(const char* test, const char* info, const char* file, const char* func, int line);

// report() and then std::abort().
[[noreturn]] void stop(const char* test, const char* file, const char* func, int line);

}  // namespace Trel::Lib

// Stops the program unless `condition` holds. `source` is the name of the source without extension,
// such as "sto/Sto_Stream"; it is the same wherever the code lives.
#define TREL_ASSERT(condition, source) \
  (static_cast<bool>(condition)        \
       ? static_cast<void>(0)          \
       : ::Trel::Lib::stop(#condition, source, __PRETTY_FUNCTION__, __LINE__))
