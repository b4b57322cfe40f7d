#include "tools/camhook/show/Html.h"

#include <ostream>

namespace camhook {
namespace {

void writeEscaped(std::ostream& out, std::string_view text) {
  constexpr std::string_view kMarkup = "&<>\"";
  while (true) {
    const std::size_t plain = text.find_first_of(kMarkup);
    out << text.substr(0, plain);
    if (plain == std::string_view::npos) return;
    switch (text[plain]) {
      case '&': out << "&amp;"; break;
      case '<': out << "&lt;"; break;
      case '>': out << "&gt;"; break;
      default: out << "&quot;"; break;
    }
    text.remove_prefix(plain + 1);
  }
}

}  // namespace

void Html::open(std::string_view element, std::initializer_list<HtmlAttribute> attributes) {
  mOut << '<' << element;
  for (const auto& [name, value] : attributes) {
    if (value.empty()) continue;
    mOut << ' ' << name << "=\"";
    writeEscaped(mOut, value);
    mOut << '"';
  }
  mOut << '>';
}

void Html::close(std::string_view element) { mOut << "</" << element << ">\n"; }

void Html::text(std::string_view text) { writeEscaped(mOut, text); }

void Html::element(std::string_view element, std::string_view text,
                   std::initializer_list<HtmlAttribute> attributes) {
  open(element, attributes);
  writeEscaped(mOut, text);
  close(element);
}

}  // namespace camhook
