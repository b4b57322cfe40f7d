// HTML, written element by element. Whatever a text holds, it stays text.

#pragma once

#include <initializer_list>
#include <iosfwd>
#include <string>
#include <string_view>

namespace camhook {

struct HtmlAttribute {
  std::string_view name;
  std::string value;
};

class Html {
 public:
  explicit Html(std::ostream& out) : mOut(out) {}

  void open(std::string_view element, std::initializer_list<HtmlAttribute> attributes = {});
  void close(std::string_view element);
  void text(std::string_view text);

  /// An element that holds a text alone.
  void element(std::string_view element, std::string_view text,
               std::initializer_list<HtmlAttribute> attributes = {});

 private:
  std::ostream& mOut;
};

}  // namespace camhook
