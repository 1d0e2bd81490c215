#include "damage/Damage_Options.h"

#include <algorithm>
#include <charconv>

namespace Trel::Damage {

namespace {

template <class Number>
bool read_number(const std::string& text, Number& number) {
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc{} && stop == end;
}

bool set_seed(Options& options, const std::string& text) {
  return read_number(text, options.seed);
}

bool set_factor(Options& options, const std::string& text) {
  return read_number(text, options.factor) && options.factor > 0 && options.factor <= 1000;
}

bool set_parts(Options& options, const std::string& text) {
  return read_number(text, options.parts) && options.parts > 0;
}

bool set_jobs(Options& options, const std::string& text) {
  return read_number(text, options.jobs) && options.jobs <= 256;
}

bool set_number(Options& options, const std::string& text) {
  return read_number(text, options.number.emplace());
}

template <std::string Options::*member>
bool set_text(Options& options, const std::string& text) {
  options.*member = text;
  return !text.empty();
}

struct Row {
  const char* name;
  const char* argument;
  bool (*set)(Options&, const std::string&);
  const char* description;
};

constexpr Row kRows[] = {
    {"--factor", "X", set_factor, "so many times the usual count of cases, such as 0.01 (1)"},
    {"--seed", "N", set_seed, "other random cases for another number (1)"},
    {"--parts", "N", set_parts,
     "select one in N elements of a long list, others in other cases (5)"},
    {"--jobs", "N", set_jobs, "processes at a time, 0 for one a processor (0)"},
    {"--subject", "NAME", set_text<&Options::subject>, "damage this file alone"},
    {"--kind", "NAME", set_text<&Options::kind>,
     "cut, flip, mended, rearrange, join or outside alone"},
    {"--case", "N", set_number, "the case of this number alone"},
    {"--findings", "FOLDER", set_text<&Options::folder>,
     "where to leave the files behind findings (damage-findings)"},
};

}  // namespace

std::optional<std::string> parse(const std::vector<std::string>& arguments, Options& options) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& name = arguments[i];
    if (name == "--help" || name == "-h") {
      options.help = true;
      continue;
    }
    const Row* row = std::find_if(std::begin(kRows), std::end(kRows),
                                  [&name](const Row& one) { return one.name == name; });
    if (row == std::end(kRows)) return "unknown option '" + name + "'";
    if (++i == arguments.size()) return name + " needs " + row->argument;
    if (!row->set(options, arguments[i])) return name + ": bad value '" + arguments[i] + "'";
  }
  return std::nullopt;
}

std::string help() {
  std::string text =
      "Usage: damage [option...]\n"
      "Damages a recording and raw files in every way, opens and converts each result, and tells\n"
      "how they ended. The exit value is 1 when one did not end as it may.\n\n";
  const auto line = [&text](std::string left, const char* right) {
    left.resize(std::max<std::size_t>(left.size() + 2, 24), ' ');
    text += "  " + left + right + "\n";
  };
  for (const Row& row : kRows) line(std::string(row.name) + " " + row.argument, row.description);
  line("--help", "this text");
  return text;
}

}  // namespace Trel::Damage
