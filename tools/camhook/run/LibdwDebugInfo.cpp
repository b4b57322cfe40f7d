// Debug information by libdw: a compilation unit's tree of functions and blocks, each with the
// range of its code. Where a function is inlined, a node of the caller's tree stands for it and
// tells the place of the call.

#include <dwarf.h>
#include <elfutils/libdwfl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <span>
#include <string_view>

#include "tools/camhook/run/DebugInfo.h"

namespace camhook {
namespace {

int findNoOtherFile(Dwfl_Module* /*module*/, void** /*userData*/, const char* /*moduleName*/,
                    Dwarf_Addr /*base*/, const char* /*file*/, const char* /*link*/,
                    GElf_Word /*checksum*/, char** /*found*/) {
  return -1;
}

constexpr Dwfl_Callbacks kCallbacks = {.find_elf = dwfl_linux_proc_find_elf,
                                       .find_debuginfo = findNoOtherFile,
                                       .section_address = nullptr,
                                       .debuginfo_path = nullptr};

/// Scopes from the innermost one outwards; libdw hands them over.
class Scopes {
 public:
  /// Those that contain a node in the tree.
  explicit Scopes(Dwarf_Die& node) : mCount(dwarf_getscopes_die(&node, &mNodes)) {}
  /// Those that contain an address, as the program's text has them.
  Scopes(Dwarf_Die& unit, Dwarf_Addr address) : mCount(dwarf_getscopes(&unit, address, &mNodes)) {}
  ~Scopes() { std::free(mNodes); }
  Scopes(const Scopes&) = delete;
  Scopes& operator=(const Scopes&) = delete;

  [[nodiscard]] std::span<Dwarf_Die> nodes() const {
    return {mNodes, mCount > 0 ? static_cast<std::size_t>(mCount) : 0};
  }

 private:
  Dwarf_Die* mNodes = nullptr;
  int mCount;
};

/// The compiler writes a source by its way from the folder of the build, or from the root.
std::string fromRoot(const char* path) {
  if (path == nullptr) return {};
  std::string text = std::filesystem::path(path).lexically_normal().string();
  while (text.starts_with("../")) text.erase(0, 3);
  return text;
}

/// Without the arguments of a template.
std::string plainName(const char* name) {
  const std::string_view text = name != nullptr ? name : "";
  if (text.starts_with("operator")) return std::string(text);
  return std::string(text.substr(0, text.find('<')));
}

int lineOfCall(Dwarf_Die& inlined) {
  Dwarf_Attribute attribute;
  Dwarf_Word line = 0;
  if (dwarf_attr(&inlined, DW_AT_call_line, &attribute) == nullptr) return 0;
  dwarf_formudata(&attribute, &line);
  return static_cast<int>(line);
}

std::string fileOfCall(Dwarf_Die& unit, Dwarf_Die& inlined) {
  Dwarf_Attribute attribute;
  Dwarf_Word file = 0;
  Dwarf_Files* files = nullptr;
  std::size_t count = 0;
  if (dwarf_attr(&inlined, DW_AT_call_file, &attribute) == nullptr ||
      dwarf_formudata(&attribute, &file) != 0 || dwarf_getsrcfiles(&unit, &files, &count) != 0) {
    return {};
  }
  return fromRoot(dwarf_filesrc(files, file, nullptr, nullptr));
}

}  // namespace

struct DebugInfo::Files {
  Dwfl* dwfl = dwfl_begin(&kCallbacks);

  Files() {
    dwfl_linux_proc_report(dwfl, getpid());
    dwfl_report_end(dwfl, nullptr, nullptr);
  }
  ~Files() { dwfl_end(dwfl); }
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;
};

DebugInfo::DebugInfo() : mFiles(std::make_unique<Files>()) {}
DebugInfo::~DebugInfo() = default;

std::optional<std::vector<Frame>> DebugInfo::framesOf(const void* returnAddress) const {
  // The call is what stands before the address: behind it may begin something else.
  const Dwarf_Addr address = reinterpret_cast<std::uintptr_t>(returnAddress) - 1;
  Dwarf_Addr bias = 0;
  Dwarf_Die* const unit = dwfl_addrdie(mFiles->dwfl, address, &bias);
  if (unit == nullptr) return {};

  Frame place;
  if (Dwarf_Line* const line = dwarf_getsrc_die(unit, address - bias)) {
    place.file = fromRoot(dwarf_linesrc(line, nullptr, nullptr));
    dwarf_lineno(line, &place.line);
  }
  std::vector<Frame> frames;
  const Scopes inText(*unit, address - bias);
  if (inText.nodes().empty()) return {};
  const Scopes inTree(inText.nodes().front());
  for (Dwarf_Die& node : inTree.nodes()) {
    const bool isInlined = dwarf_tag(&node) == DW_TAG_inlined_subroutine;
    if (!isInlined && dwarf_tag(&node) != DW_TAG_subprogram) continue;
    place.function = plainName(dwarf_diename(&node));
    frames.push_back(place);
    if (!isInlined) return frames;
    place = {.function = {}, .file = fileOfCall(*unit, node), .line = lineOfCall(node)};
  }
  frames.push_back(place);  // in a function that the debug information does not name
  return frames;
}

}  // namespace camhook
