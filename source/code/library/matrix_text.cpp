#include "library/matrix_text.h"

#include <array>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string_view>

#include "library/matrix_support.h"

namespace Trel::Lib {

namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

struct FreeText {
  void operator()(char* text) const { std::free(text); }
};
struct Text {
  std::unique_ptr<char, FreeText> bytes;
  std::size_t size = 0;
};

// A code with the text of its notice, null for the code's own.
struct Outcome {
  int code = kSuccess;
  const char* text = nullptr;
};

Outcome read_file(const char* path, Text& text) {
  const File file(std::fopen(path, "rb"));
  if (!file) return {kFileNotOpened};
  std::size_t capacity = 0;
  for (;;) {
    if (text.size == capacity) {
      capacity = capacity == 0 ? 4096 : capacity * 2;
      char* grown = static_cast<char*>(std::realloc(text.bytes.get(), capacity));
      if (grown == nullptr) return {kAllocationFailed, kNoWorkspace};
      static_cast<void>(text.bytes.release());
      text.bytes.reset(grown);
    }
    const std::size_t wanted = capacity - text.size;
    const std::size_t got = std::fread(text.bytes.get() + text.size, 1, wanted, file.get());
    text.size += got;
    if (got < wanted) return {std::ferror(file.get()) != 0 ? kFileSystem : kSuccess};
  }
}

// Takes a text apart into numbers and ends of lines.
class Scanner {
 public:
  enum class Token { kNumber, kLine, kEnd, kBad };

  explicit Scanner(const Text& text) : at_(text.bytes.get()), end_(text.bytes.get() + text.size) {}

  Token next(double& value) {
    while (at_ != end_ && is_gap(*at_)) ++at_;
    if (at_ == end_) return Token::kEnd;
    if (*at_ == '\n') {
      ++at_;
      return Token::kLine;
    }
    const char* first = *at_ == '+' && end_ - at_ > 1 && at_[1] != '-' ? at_ + 1 : at_;
    const auto [after, error] = std::from_chars(first, end_, value);
    const bool ended = after == end_ || is_gap(*after) || *after == '\n';
    if (error != std::errc() || !ended || !std::isfinite(value)) return Token::kBad;
    at_ = after;
    return Token::kNumber;
  }

 private:
  static bool is_gap(char letter) {
    return letter == ' ' || letter == '\t' || letter == ',' || letter == '\r';
  }

  const char* at_;
  const char* end_;
};

// Finds the shape of the matrix in `text`.
Outcome measure(const Text& text, int& rows, int& cols) {
  using Token = Scanner::Token;
  Scanner scanner(text);
  long long counted_rows = 0;
  long long counted_cols = 0;
  long long in_row = 0;
  for (;;) {
    double value = 0;
    const Token token = scanner.next(value);
    const bool started = counted_rows > 0 || in_row > 0;
    if (token == Token::kBad) {
      return {kFileFormat, started ? "Incorrect format: number expected"
                                   : "Incorrect format: matrix file should start with a number"};
    }
    if (token == Token::kNumber) {
      ++in_row;
      continue;
    }
    if (in_row > 0) {
      if (counted_rows > 0 && in_row != counted_cols) {
        return {kFileFormat, "Incorrect format: rows of different length encountered"};
      }
      counted_cols = in_row;
      ++counted_rows;
      in_row = 0;
    }
    if (token == Token::kEnd) break;
  }
  if (counted_rows == 0) return {kFileFormat, "Incorrect format: empty file encountered"};
  constexpr int kMost = std::numeric_limits<int>::max();
  if (counted_rows > kMost || counted_cols > kMost) return {kAllocationFailed, kNoMatrix};
  rows = static_cast<int>(counted_rows);
  cols = static_cast<int>(counted_cols);
  return {};
}

void read_numbers(const Text& text, double* values) {
  Scanner scanner(text);
  double value = 0;
  for (auto token = scanner.next(value); token != Scanner::Token::kEnd;
       token = scanner.next(value)) {
    if (token == Scanner::Token::kNumber) *values++ = value;
  }
}

Outcome read_shape(const char* path, Text& text, int& rows, int& cols) {
  const Outcome read = read_file(path, text);
  return read.code == kSuccess ? measure(text, rows, cols) : read;
}

}  // namespace

int MatReadR(RealMatrix* m, const char* path) {
  if (m == nullptr || path == nullptr) return refuse(kNullPointer, TREL_HERE);
  *m = RealMatrix{};
  Text text;
  int rows = 0;
  int cols = 0;
  const Outcome read = read_shape(path, text, rows, cols);
  if (read.code != kSuccess) return refuse(read.code, TREL_HERE, read.text);
  if (const int code = MatAllocR(m, rows, cols)) return code;
  read_numbers(text, m->data);
  m->rows = rows;
  m->cols = cols;
  return kSuccess;
}

int MatReadD(DiagonalMatrix* d, const char* path) {
  if (d == nullptr || path == nullptr) return refuse(kNullPointer, TREL_HERE);
  *d = DiagonalMatrix{};
  Text text;
  int rows = 0;
  int cols = 0;
  const Outcome read = read_shape(path, text, rows, cols);
  if (read.code != kSuccess) return refuse(read.code, TREL_HERE, read.text);
  if (rows != 1 && cols != 1) {
    return refuse(kFileFormat, TREL_HERE, "Incorrect format: diagonal should be one row or column");
  }
  const int size = rows == 1 ? cols : rows;
  if (const int code = MatAllocD(d, size)) return code;
  read_numbers(text, d->data);
  d->size = size;
  return kSuccess;
}

namespace {

// Writes each number in its shortest exact form, a row a line. False when the file does not take
// it.
bool write_rows(std::FILE* file, const Operand& a) {
  std::array<char, 32> letters;
  for (int i = 0; i < a.rows; ++i) {
    for (int j = 0; j < a.cols; ++j) {
      auto* const end = std::to_chars(letters.data(), letters.data() + letters.size(), a(i, j)).ptr;
      if (j > 0) std::fputc(' ', file);
      std::fwrite(letters.data(), 1, static_cast<std::size_t>(end - letters.data()), file);
    }
    std::fputc('\n', file);
  }
  return std::ferror(file) == 0;
}

int write_file(const char* path, const Operand& a) {
  std::FILE* file = std::fopen(path, "wb");
  if (file == nullptr) return kFileNotOpened;
  const bool written = write_rows(file, a);
  const bool closed = std::fclose(file) == 0;
  return written && closed ? kSuccess : kFileSystem;
}

// Right-aligned in 16 characters.
void print_number(std::FILE* out, double value) {
  std::array<char, 32> letters;
  auto* const end = std::to_chars(letters.data(), letters.data() + letters.size(), value,
                                  std::chars_format::general, 8)
                        .ptr;
  std::fprintf(out, "%16.*s", static_cast<int>(end - letters.data()), letters.data());
}

void print_rows(std::FILE* out, const Operand& a) {
  for (int i = 0; i < a.rows; ++i) {
    for (int j = 0; j < a.cols; ++j) print_number(out, a(i, j));
    std::fputc('\n', out);
  }
}

int printed(std::FILE* out) {
  return std::fflush(out) == 0 && std::ferror(out) == 0 ? kSuccess : kFileSystem;
}

}  // namespace

int MatWrite(const RealMatrix* a, const char* path) {
  if (path == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = argument_code(a)) return refuse(code, TREL_HERE);
  const int code = write_file(path, plain(*a));
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int MatDWrite(const DiagonalMatrix* d, const char* path) {
  if (path == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = argument_code(d)) return refuse(code, TREL_HERE);
  const int code = write_file(path, Operand{d->data, d->size, 1, 1, 1});
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int MatPrint(const RealMatrix* a, std::FILE* out) {
  if (a == nullptr || out == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (a->rows == 0 && a->cols == 0) return kSuccess;
  if (const int code = shape_code(a)) return refuse(code, TREL_HERE);
  print_rows(out, plain(*a));
  const int code = printed(out);
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int MatCPrint(const CroutMatrix* c, std::FILE* out) {
  if (c == nullptr || out == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (c->size == 0) return kSuccess;
  if (const int code = shape_code(c)) return refuse(code, TREL_HERE);
  print_rows(out, Operand{c->data, c->size, c->size, c->size, 1});
  for (int k = 0; k < c->size; ++k) std::fprintf(out, "%16d", c->pivots[k]);
  std::fputc('\n', out);
  const int code = printed(out);
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int MatDPrint(const DiagonalMatrix* d, std::FILE* out) {
  if (d == nullptr || out == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (d->size == 0) return kSuccess;
  if (const int code = shape_code(d)) return refuse(code, TREL_HERE);
  print_rows(out, Operand{d->data, 1, d->size, d->size, 1});
  const int code = printed(out);
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

}  // namespace Trel::Lib
