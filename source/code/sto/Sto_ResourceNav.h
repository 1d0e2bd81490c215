// A raw navigation file: packets of one family.
//
// The constructor finds the stream's span in passes over the file. The extension decides on the
// kind of stream; one that is not known makes none, and in a file without packets the stream never
// becomes storable.
#pragma once

#include "sto/Sto_ResourceRaw.h"

namespace Trel::Sto {

class ResourceNav : public ResourceRaw {
 public:
  ResourceNav(const Options& options, const std::string& path, Messages* messages);
  // With the given kinds in place of those of the system.
  ResourceNav(const Options& options, const std::string& path, Messages* messages,
              std::span<const StreamKind> kinds);

  // Nothing is left to do.
  void do_store() override {}
  // See export_packets().
  bool do_export(const std::string& path, nano_t from, nano_t to) override;

 private:
  void do_init(std::span<const StreamKind> kinds);
  void do_prescan();
  void do_postscan();
};

}  // namespace Trel::Sto
