/// JSON that is written value by value, so that a large document is never held as JSON.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string_view>
#include <vector>

namespace zupm::tool {

/// Writes documents; each ends with a line break. In an object each value follows the Key that it belongs to.
///
/// Errors    The caller closes what it opened. The stream keeps its own errors.
class JsonWriter {
public:
    enum class Form {
        Indented,  ///< by two blanks a level
        OneLine,
        Embedded,  ///< without blanks, for a script element of HTML: no text can end it or begin a comment
    };
    /// The version of what the tool prints as JSON. It grows when a member is removed or changes its meaning.
    static constexpr std::uint64_t kSchema = 1;

    explicit JsonWriter(std::ostream& out, Form form = Form::Indented) : m_out(out), m_form(form) {}
    /// Ends the line of a document that an exception cuts off: what is written next is no part of it.
    ~JsonWriter();
    JsonWriter(const JsonWriter&) = delete;
    JsonWriter& operator=(const JsonWriter&) = delete;

    void BeginObject() { Begin('{'); }
    void EndObject() { End('}'); }
    void BeginArray() { Begin('['); }
    void EndArray() { End(']'); }

    JsonWriter& Key(std::string_view name);

    /// A text is UTF-8; a byte that is no part of a valid sequence, as in a file's name, becomes U+FFFD.
    void Text(std::string_view text);
    void Number(std::uint64_t number);
    void Boolean(bool value);
    void Null();
    /// A line or a column; null for 0, which is none.
    void Place(std::uint64_t number);
    void TextOrNull(const std::optional<std::string>& text);

    /// Begins a document: an object whose first member is the version of its form.
    void BeginDocument();

    /// Key and Text.
    void Member(std::string_view name, std::string_view text) { Key(name).Text(text); }

private:
    void Begin(char bracket);
    void End(char bracket);
    /// Comma, line break and indentation where one more value begins.
    void BeginValue();
    void BeginLine();
    /// The line break at the document's end.
    void EndValue();
    void Quote(std::string_view text);
    [[nodiscard]] bool IsPlain(char c) const;
    /// Writes a character that is more than one byte.
    void WriteCharacter(char32_t character, std::string_view bytes);

    std::ostream& m_out;
    Form m_form;
    std::vector<bool> m_hasValues;  ///< one for each open bracket
    bool m_afterKey = false;
};

}  // namespace zupm::tool
