// Texts are the printable, zero-terminated strings of the library's read-only segments, floats its
// aligned words that read as round numbers. Numbers are the operands of compare instructions, found
// by their first bytes wherever these occur in the code. What was no constant at all, but the
// middle of an instruction or of a table, costs a replay and harms nothing.

#include "tools/camhook/explain/LibraryConstants.h"

#include <link.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <fstream>
#include <span>
#include <string_view>

#include "common/HeskParameterUpdater.h"
#include "tools/camhook/explain/SensorModeRules.h"

namespace camhook {
namespace {

using Bytes = std::span<const std::uint8_t>;

/// Copies of what is loaded.
struct Segments {
  std::vector<std::vector<std::uint8_t>> readOnly;
  std::vector<std::vector<std::uint8_t>> code;
};

/// By way of the system: what lies between the objects of a segment is nobody's to read directly.
std::vector<std::uint8_t> copyOfMemory(std::uintptr_t start, std::size_t size) {
  std::vector<std::uint8_t> bytes(size);
  std::ifstream memory("/proc/self/mem", std::ios::binary);
  memory.seekg(static_cast<std::streamoff>(start));
  memory.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
  bytes.resize(static_cast<std::size_t>(memory.gcount()));
  return bytes;
}

/// Keeps the segments of the object into which a known function of the library is loaded.
int onLoadedObject(dl_phdr_info* object, std::size_t /*size*/, void* out) {
  const auto function = reinterpret_cast<std::uintptr_t>(&HeskParameterUpdater::createInstance);
  Segments found;
  bool isLibrary = false;
  for (const auto& header : std::span(object->dlpi_phdr, object->dlpi_phnum)) {
    const std::uintptr_t start = object->dlpi_addr + header.p_vaddr;
    if (header.p_type != PT_LOAD || (header.p_flags & PF_W) != 0) continue;
    const bool isCode = (header.p_flags & PF_X) != 0;
    (isCode ? found.code : found.readOnly).push_back(copyOfMemory(start, header.p_memsz));
    isLibrary |= isCode && start <= function && function - start < header.p_memsz;
  }
  // Some linkers put code and what it reads into one segment.
  if (found.readOnly.empty()) found.readOnly = found.code;
  if (isLibrary) *static_cast<Segments*>(out) = std::move(found);
  return isLibrary ? 1 : 0;
}

template <typename T>
T wordAt(Bytes bytes, std::size_t at) {
  T word{};
  if (at + sizeof word <= bytes.size()) std::memcpy(&word, &bytes[at], sizeof word);
  return word;
}

void addTexts(Bytes bytes, std::vector<std::string>& texts) {
  constexpr std::size_t kShortest = 2;
  constexpr std::size_t kLongest = 64;
  const std::string_view all(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  const auto isPrintable = [](char byte) { return byte >= ' ' && byte <= '~'; };
  for (std::size_t at = 0; at < all.size();) {
    const std::size_t end = std::min(all.find('\0', at), all.size());
    const std::string_view text = all.substr(at, end - at);
    // Neither formats nor the linker's names are values.
    if (text.size() >= kShortest && text.size() <= kLongest &&
        text.find('%') == std::string_view::npos && !text.starts_with('_') &&
        std::ranges::all_of(text, isPrintable)) {
      texts.emplace_back(text);
    }
    at = end + 1;
  }
}

/// Numbers of few binary digits between 1/1024 and 65536, as people write them into code.
void addFloats(Bytes bytes, std::vector<float>& floats) {
  constexpr std::uint32_t kLowDigits = 0xfff;
  for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4) {
    const auto word = wordAt<std::uint32_t>(bytes, at);
    const auto number = std::bit_cast<float>(word);
    if ((word & kLowDigits) != 0 || !std::isfinite(number)) continue;
    if (number >= 0x1p-10F && number <= 0x1p16F) floats.push_back(number);
  }
}

#if defined(__x86_64__)

/// The bytes of an operand in memory or a register behind its ModRM byte.
std::size_t operandBytes(Bytes code, std::size_t at) {
  const auto modRm = wordAt<std::uint8_t>(code, at);
  const unsigned mode = modRm >> 6U;
  const unsigned base = modRm & 7U;
  const std::size_t scaleByte = mode != 3 && base == 4 ? 1 : 0;
  if (mode == 1) return scaleByte + 1;
  if (mode == 2 || (mode == 0 && base == 5)) return scaleByte + 4;
  return scaleByte;
}

void addNumbers(Bytes code, std::vector<std::int64_t>& numbers) {
  // Behind these 0x3d is no instruction, but says which operand they have.
  constexpr std::uint8_t kWithModRm[] = {0x39, 0x3b, 0x80, 0x81, 0x83, 0x89,
                                         0x8b, 0x8d, 0xc6, 0xc7, 0xff};
  for (std::size_t at = 1; at + 1 < code.size(); ++at) {
    if (code[at] == 0x3d && std::ranges::find(kWithModRm, code[at - 1]) == std::end(kWithModRm)) {
      numbers.push_back(wordAt<std::int32_t>(code, at + 1));            // cmp eax, number
    } else if (code[at] == 0x81 && ((code[at + 1] >> 3U) & 7U) == 7) {  // cmp any, number
      numbers.push_back(wordAt<std::int32_t>(code, at + 2 + operandBytes(code, at + 1)));
    }
  }
}

#elif defined(__aarch64__)

void addNumbers(Bytes code, std::vector<std::int64_t>& numbers) {
  for (std::size_t at = 0; at + 4 <= code.size(); at += 4) {
    const auto word = wordAt<std::uint32_t>(code, at);
    if ((word & 0x7f80001fU) == 0x7100001fU) {  // cmp register, number
      const std::int64_t number = (word >> 10U) & 0xfffU;
      numbers.push_back((word & 0x400000U) != 0 ? number << 12U : number);
    } else if ((word & 0x7f800000U) == 0x52800000U) {  // movz, perhaps with a movk behind it
      const std::int64_t low = static_cast<std::int64_t>((word >> 5U) & 0xffffU)
                               << (16U * ((word >> 21U) & 3U));
      numbers.push_back(low);
      const auto next = wordAt<std::uint32_t>(code, at + 4);
      if ((next & 0x7fe00000U) == 0x72a00000U) {
        numbers.push_back(low | (static_cast<std::int64_t>((next >> 5U) & 0xffffU) << 16U));
      }
    }
  }
}

#else

void addNumbers(Bytes /*code*/, std::vector<std::int64_t>& /*numbers*/) {}

#endif

/// Adds what the rules ask for, and for which products they are.
void addRules(LibraryConstants& constants) {
  for (const SensorModeTable& table : hesk::sensorModeTables()) {
    constants.texts.emplace_back(table.productName);
    for (const RuleList& list : kRuleLists) {
      for (const SensorModeCfg& rule : table.*list.rules) {
        constants.texts.push_back(rule.appType);
        constants.numbers.insert(constants.numbers.end(), {rule.isHfpsMode, rule.fps, rule.eisMode,
                                                           rule.videoAlgoType, rule.uiMode});
      }
    }
  }
}

template <typename T>
void keepEachOnce(std::vector<T>& list) {
  std::sort(list.begin(), list.end());
  list.erase(std::unique(list.begin(), list.end()), list.end());
}

}  // namespace

LibraryConstants libraryConstants() {
  Segments library;
  dl_iterate_phdr(&onLoadedObject, &library);
  LibraryConstants constants;
  for (const auto& bytes : library.readOnly) {
    addTexts(bytes, constants.texts);
    addFloats(bytes, constants.floats);
  }
  for (const auto& code : library.code) addNumbers(code, constants.numbers);
  addRules(constants);
  keepEachOnce(constants.texts);
  keepEachOnce(constants.numbers);
  keepEachOnce(constants.floats);
  return constants;
}

}  // namespace camhook
