#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace dravik {

/// Writes one JSON document (RFC 8259) from its beginning to its end. No tree is built: for a folder of thousands of
/// files that would take longer than reading the files. Texts are UTF-8; bytes that are not become U+FFFD. Objects and
/// arrays are closed in the order in which they were opened; a member is a `key` and what is written next.
class JsonWriter {
  public:
    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    void beginArray() { open('['); }
    void endArray() { close(']'); }
    /// Names are ours: letters and digits.
    void key(std::string_view name);

    void value(std::string_view text);
    void value(const std::string& text) { value(std::string_view(text)); }
    void value(const char* text) { value(std::string_view(text)); }
    void value(bool flag) { scalar(flag ? "true" : "false"); }
    /// The shortest digits that read back as the same number; null for what is not a number.
    void value(double number);
    template <typename Integer>
    requires std::is_integral_v<Integer>
    void value(Integer number) { scalar(std::to_string(number)); }
    void null() { scalar("null"); }
    template <typename Value>
    void value(const std::optional<Value>& optional) {
        if (optional) {
            value(*optional);
        } else {
            null();
        }
    }
    template <typename Value>
    void member(std::string_view name, const Value& content) {
        key(name);
        value(content);
    }

    /// The document, ended by a line feed.
    [[nodiscard]] std::string text() && { return std::move(out_ += '\n'); }

  private:
    void open(char bracket);
    void close(char bracket);
    void scalar(std::string_view text);
    void place();
    void newLine();

    std::string out_;
    std::size_t depth_ = 0;
    bool first_ = true;  ///< nothing stands yet in the object or array that is open
    bool afterKey_ = false;
};

}  // namespace dravik
