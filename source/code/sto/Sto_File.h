// Logical readers: a stream's private view of a file.
//
// A reader has its own handle, a stretch of the file, and what turns bytes into the stream's
// packets. It opens the file while it is used and keeps its place while it is closed, so a store of
// many streams does not hold many files open. A failed read delivers 0 bytes, which every caller
// takes as the end of the data. A reader belongs to one stream and takes no lock.
#pragma once

#include <ogg/ogg.h>

#include <fstream>
#include <string>

#include "com/Com_XComStream.h"

namespace Trel::Sto {

class Logical {
 public:
  Logical() = default;
  virtual ~Logical() = default;
  Logical(const Logical&) = delete;
  Logical& operator=(const Logical&) = delete;

  // Binds the reader to a file and to the whole of its length, and leaves it closed unless it was
  // open. False when the file cannot be opened.
  bool set_file(const std::string& path);
  // Binds, opens, sets the stretch and goes to its start. A file that cannot be opened stops the
  // program.
  void open(const std::string& path, unsigned long long from, unsigned long long to);

  // Bounds of the stretch, limited to the file's size. A finish of 0 means the end of the file.
  void set_start(unsigned long long value);
  void set_finish(unsigned long long value);

  // Goes to the start of the stretch and clears a failure.
  void rewind();
  // Opens the file if it is closed and goes on from the place that the reader keeps. It clears a
  // failure, as running into the end of the file is one.
  void enable();
  void disable();

  // Open, and no read has failed or met the end.
  [[nodiscard]] bool good() const { return file_.is_open() && file_.good(); }
  // The place of the next read; the file's size when the reader is not good.
  [[nodiscard]] unsigned long long absolute() const { return good() ? position_ : size_; }
  // Reads up to `count` bytes and returns how many came; 0 when the reader is not good.
  unsigned long long read(unsigned char* buffer, unsigned long long count);

  [[nodiscard]] unsigned long long size() const { return size_; }
  [[nodiscard]] unsigned long long start() const { return start_; }
  [[nodiscard]] unsigned long long finish() const { return finish_; }
  [[nodiscard]] unsigned long long span() const { return span_; }
  [[nodiscard]] unsigned long long position() const { return position_; }

 private:
  // Opens the file and measures it.
  bool open_and_measure();
  void go_to(unsigned long long place);
  void update_span() { span_ = finish_ - start_; }

  std::string file_name_;
  std::ifstream file_;
  unsigned long long size_ = 0;
  unsigned long long start_ = 0;
  unsigned long long finish_ = 0;
  unsigned long long span_ = 0;
  unsigned long long position_ = 0;
};

// Owner of a page synchronisation of libogg, ready for use.
class OggSync {
 public:
  OggSync();
  ~OggSync();
  OggSync(const OggSync&) = delete;
  OggSync& operator=(const OggSync&) = delete;

  // Drops the bytes held and the synchronisation.
  void reset();
  // Room for `size` bytes, to be reported by wrote(); null without memory.
  [[nodiscard]] unsigned char* buffer(unsigned long long size);
  void wrote(unsigned long long count);
  // The next whole page, in place until the next call of buffer(); bytes that belong to none are
  // passed over. False when more bytes are needed.
  bool next_page(ogg_page& page);

 private:
  ogg_sync_state sync;
};

// A reader of pages.
class LogicalOgg : public Logical {
 public:
  void rewind();
  // Reads up to `size` bytes into the synchronisation and returns how many came.
  unsigned long long read(unsigned long long size);

 protected:
  OggSync sync_;
};

// A reader of one XCom stream: it reads the whole file and throws away other streams' pages.
class LogicalXCom : public LogicalOgg {
 public:
  explicit LogicalXCom(unsigned int serial) : decoder_(serial, false), serial_(serial) {}

  // The pages, and the decoder back to where it steps over the headers.
  void rewind();
  // One read, and every page of the stream that it completes handed to the decoder. Returns the
  // count of bytes read: 0 is the end of the data.
  unsigned long long do_gobble(unsigned long long size);

  [[nodiscard]] Com::XComStreamDec& decoder() { return decoder_; }

 private:
  Com::XComStreamDec decoder_;
  unsigned int serial_;
};

}  // namespace Trel::Sto
