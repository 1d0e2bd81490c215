#include "can/Can_Dbc.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "can/Can_Text.h"

namespace Trel::Can {

namespace {

// The bytes of `text` made fit for reading by lines: the zero byte that ends it, and those that
// stand in the place of line ends, are the only ones left.
std::string cleaned(std::string text) {
  for (std::size_t at = 0; at + 1 < text.size(); ++at) {
    char& byte = text[at];
    if (byte == '\r' || byte == '\n') {
      byte = '\0';
    } else if (byte == '\t') {
      byte = ' ';
    } else if (static_cast<unsigned char>(byte) <= 0x1F) {
      byte = '?';
    }
  }
  return text;
}

// Hands each run of non-zero bytes to `take`, without its leading spaces.
template <class Take>
void for_each_line(std::string_view text, Take&& take) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\0'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    if (!line.empty()) take(line);
  }
}

// The text from the first double quote to the last; false with fewer than two.
bool read_quoted(std::string_view text, std::string_view& quoted) {
  const std::size_t first = text.find('"');
  const std::size_t last = text.rfind('"');
  if (first == last) return false;
  quoted = text.substr(first + 1, last - first - 1);
  return true;
}

// The signals of one name in one message.
struct SignalGroup {
  std::vector<Signal*> signals;
  std::string_view comment;
};
using SignalGroups = std::unordered_map<std::string_view, SignalGroup>;

}  // namespace

bool Instance::add_message(const Message& message) {
  const unsigned int mid = message.get_mid();
  if (messages_.size() >= kMessageLimit || get_message_by_mid(mid) != nullptr) return false;
  auto added = std::make_unique<Message>(message);
  added->set_derived_identifiers(messages_.size(), message_names_[message.get_name()]++);
  const auto place = std::ranges::lower_bound(messages_by_mid_, mid, {}, &MessageKey::mid);
  messages_by_mid_.insert(place, {mid, added.get()});
  messages_.push_back(std::move(added));
  return true;
}

bool Instance::add_signal(Signal signal) {
  if (messages_.empty() || signals_.size() >= kSignalLimit) return false;
  auto added = std::make_unique<Signal>(std::move(signal));
  const unsigned int sid = next_sid_++;
  added->set_derived_identifiers(sid, signals_.size(), signal_names_[added->get_name()]++);
  added->set_message(messages_.back().get());
  messages_.back()->add(added.get());
  signals_by_sid_.emplace(sid, added.get());
  signals_.push_back(std::move(added));
  return true;
}

void Instance::parse_node(std::string_view line) {
  const std::size_t colon = line.find(':');
  nodes_ = colon == std::string_view::npos ? std::string_view() : trim(line.substr(colon + 1));
}

Message* Instance::get_message_by_mid(unsigned int mid) const {
  const auto found = std::ranges::lower_bound(messages_by_mid_, mid, {}, &MessageKey::mid);
  return found != messages_by_mid_.end() && found->mid == mid ? found->message : nullptr;
}

Signal* Instance::get_signal_by_sid(unsigned int sid) const {
  const auto found = signals_by_sid_.find(sid);
  return found == signals_by_sid_.end() ? nullptr : found->second;
}

Signal* Instance::get_signal_by_six(std::size_t six) const {
  return six < signals_.size() ? signals_[six].get() : nullptr;
}

void Dbc::configure(std::span<const unsigned char> bytes) {
  text_.assign(bytes.begin(), bytes.end());
  text_.push_back('\0');
  parse();
}

void Dbc::parse() {
  instance_ = Instance();
  const std::string text = cleaned(text_);
  parse_definitions(text);
  parse_comments(text);
}

void Dbc::parse_definitions(std::string_view text) {
  bool in_message = false;
  for_each_line(text, [&](std::string_view line) {
    const std::string_view word = first_word(line);
    if (word == "BO_") {
      Message message;
      in_message = message.parse(line) && instance_.add_message(message);
    } else if (word == "SG_") {
      Signal signal;
      if (in_message && signal.parse(line)) instance_.add_signal(std::move(signal));
    } else if (word.starts_with("BU_:")) {
      instance_.parse_node(line);
    }
  });
}

// A comment is given out once its last statement is known: one line can name many signals, and many
// lines the same ones.
void Dbc::parse_comments(std::string_view text) {
  std::unordered_map<unsigned int, SignalGroups> groups;
  for (const auto& signal : instance_.get_signals()) {
    groups[signal->get_message()->get_mid()][signal->get_name()].signals.push_back(signal.get());
  }

  for_each_line(text, [&](std::string_view line) {
    Scanner scanner(line);
    std::string_view statement;
    std::string_view object;
    std::string_view name;
    std::string_view comment;
    unsigned int mid = 0;
    if (!scanner.read_word(statement) || statement != "CM_" || !scanner.read_word(object) ||
        !scanner.read_unsigned(mid)) {
      return;
    }
    Message* const message = instance_.get_message_by_mid(mid);
    if (message == nullptr) return;
    if (object == "BO_") {
      if (read_quoted(scanner.rest(), comment)) message->set_comment(comment);
    } else if (object == "SG_" && scanner.read_word(name) && read_quoted(scanner.rest(), comment)) {
      SignalGroups& by_name = groups[mid];
      if (const auto found = by_name.find(name); found != by_name.end()) {
        found->second.comment = comment;
      }
    }
  });

  for (auto& [mid, by_name] : groups) {
    for (auto& [name, group] : by_name) {
      const auto shared = std::make_shared<const std::string>(group.comment);
      for (Signal* const signal : group.signals) signal->set_comment(shared);
    }
  }
}

}  // namespace Trel::Can
