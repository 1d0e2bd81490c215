// Error codes of the mathematics, their texts, and the one path on which they are reported.
//
// Every function of the matrix, quaternion and geodesy rooms that can fail returns one of these
// codes (0 is success) and reports a failure once, where it is met, at level 1. Reports go to the
// standard error stream. What a file says must be tested before it gets here, so that no recording
// can make the program talk.
#pragma once

#include <array>

namespace Trel::Lib {

enum ErrorCode : int {
  kSuccess = 0,
  kAllocationFailed = 1,
  kNullPointer = 2,
  kOutOfRange = 3,  // a number that is not finite or outside its range; shapes that do not fit
  kInsufficientSpace = 4,  // the result's storage is too small
  kIllConditioned = 5,
  kFileNotOpened = 6,
  kFileFormat = 7,
  kInconsistent = 8,
  kProtocol = 9,
  kFileSystem = 10,
  kNotWritten = 11,
  kHardware = 12,
};

enum ErrorLevel : int {
  kWarning = 0,
  kError = 1,
  kFatalError = 2,
  kKilled = 3,
  kInfo = 4,
};

// The text of each ErrorCode.
inline constexpr std::array<const char*, 13> error_messages = {
    "successful operation",
    "unable to allocate required memory space",
    "NULL pointer encountered",
    "numerical argument out of range",
    "insufficient memory space allocated",
    "ill-conditioned operation",
    "unable to open file",
    "incorrect file format",
    "internal inconsistency",
    "protocol error",
    "file system error",
    "code not written yet",
    "hardware error",
};
static_assert(error_messages.size() == kHardware + 1);

// The word of each ErrorLevel.
inline constexpr std::array<const char*, 5> error_levels = {"Warning", "Error", "Fatal error",
                                                            "Killed", "Info"};
static_assert(error_levels.size() == kInfo + 1);

// Writes a notice of two lines to the standard error stream and flushes both output streams:
//
//   *** Error in function MatInvRA() at line 12 of file matrix_factor.cpp ***
//   --> ill-conditioned operation
//
// A level without a word counts as kError. Of `file` only what follows its last slash or backslash
// is shown. A null or empty `file` or `function` and a negative `line` read as unknown. A null or
// empty `text` stands for the code's own text (that of kInconsistent for a code without one).
// Returns 0, also for kFatalError; kKilled alone ends the process, with exit status 1.
int report_notice(int code, int level, const char* file, int line, const char* function,
                  const char* text);

}  // namespace Trel::Lib
