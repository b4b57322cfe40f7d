// Debug information by libdw: a compilation unit is a tree of functions and blocks, each with the
// range of its code. An inlined function is a node in the tree of its caller, with the place of the
// call.

#include <dwarf.h>
#include <elfutils/libdwfl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
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

/// The debug information of this process.
Dwfl* openProcess() {
  Dwfl* const dwfl = dwfl_begin(&kCallbacks);
  dwfl_linux_proc_report(dwfl, getpid());
  dwfl_report_end(dwfl, nullptr, nullptr);
  return dwfl;
}

/// Scopes that libdw allocated, from the innermost outwards.
std::vector<Dwarf_Die> takeScopes(Dwarf_Die* scopes, int count) {
  std::vector<Dwarf_Die> taken(scopes, scopes + std::max(count, 0));
  std::free(scopes);
  return taken;
}

/// Source paths are relative to the folder of the build or to the root of the sources.
std::string fromRoot(const char* path) {
  if (path == nullptr) return {};
  std::string text = std::filesystem::path(path).lexically_normal().string();
  while (text.starts_with("../")) text.erase(0, 3);
  return text;
}

/// Removes the arguments of a template.
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

std::optional<std::vector<Step>> framesOf(const void* returnAddress) {
  static const std::unique_ptr<Dwfl, decltype(&dwfl_end)> dwfl(openProcess(), &dwfl_end);
  // The call ends at the return address, where another block may begin.
  const Dwarf_Addr address = reinterpret_cast<std::uintptr_t>(returnAddress) - 1;
  Dwarf_Addr bias = 0;
  Dwarf_Die* const unit = dwfl_addrdie(dwfl.get(), address, &bias);
  if (unit == nullptr) return {};

  Step place{.name = {}, .file = {}};
  if (Dwarf_Line* const line = dwarf_getsrc_die(unit, address - bias)) {
    place.file = fromRoot(dwarf_linesrc(line, nullptr, nullptr));
    dwarf_lineno(line, &place.line);
  }
  Dwarf_Die* nodes = nullptr;
  int count = dwarf_getscopes(unit, address - bias, &nodes);
  std::vector<Dwarf_Die> scopes = takeScopes(nodes, count);
  if (scopes.empty()) return {};
  // Beyond an inlined function, these scopes are those of its source. getscopes_die returns the
  // scopes of its caller.
  nodes = nullptr;
  count = dwarf_getscopes_die(&scopes.front(), &nodes);
  scopes = takeScopes(nodes, count);
  std::vector<Step> frames;
  for (Dwarf_Die& node : scopes) {
    const bool isInlined = dwarf_tag(&node) == DW_TAG_inlined_subroutine;
    if (!isInlined && dwarf_tag(&node) != DW_TAG_subprogram) continue;
    place.name = plainName(dwarf_diename(&node));
    frames.push_back(place);
    if (!isInlined) return frames;
    place = {.name = {}, .file = fileOfCall(*unit, node), .line = lineOfCall(node)};
  }
  frames.push_back(place);  // in a function without a name in the debug information
  return frames;
}

}  // namespace camhook
