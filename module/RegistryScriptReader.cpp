#include <optional>
#include <utility>

#include "module/RegistryScript.h"
#include "module/RegistryScriptTokens.h"

namespace zupm {

namespace {

constexpr std::string_view kModule = "%MODULE%";
constexpr std::size_t kDeepestKey = 16;
constexpr std::size_t kLongestName = 255;

/// Reads one script, token by token; the first error ends it.
class Reader {
public:
    Reader(std::string_view text, std::u16string_view modulePath) : m_tokens(text), m_modulePath(modulePath)
    {
        Advance();
    }

    [[nodiscard]] std::variant<RegistryScript, ScriptError> Read()
    {
        if (ReadHead() && ReadBody() && ReadTail()) {
            return std::move(m_script);
        }
        return m_error;
    }

private:
    void Advance() { m_token = m_tokens.Next(); }

    bool Fail(std::string_view reason)
    {
        m_error = {m_token.line, m_token.kind == ScriptTokenKind::Invalid ? m_token.reason : reason};
        return false;
    }

    [[nodiscard]] bool IsWord(std::string_view word) const
    {
        return m_token.kind == ScriptTokenKind::Word && m_token.text == word;
    }

    bool Take(ScriptTokenKind kind, std::string_view reason)
    {
        if (m_token.kind != kind) {
            return Fail(reason);
        }
        Advance();
        return true;
    }

    bool ReadHead()
    {
        if (!IsWord("HKCR")) {
            return Fail("a script begins with HKCR");
        }
        Advance();
        return Take(ScriptTokenKind::Open, "HKCR needs its keys in braces");
    }

    bool ReadTail() { return m_token.kind == ScriptTokenKind::End || Fail("nothing may follow the script"); }

    // One pass over keys and values; m_open has the keys whose braces are open, so nothing here calls itself.
    bool ReadBody()
    {
        for (;;) {
            if (m_token.kind == ScriptTokenKind::Close) {
                Advance();
                if (m_open.empty()) {
                    return true;
                }
                m_open.pop_back();
            } else if (!(IsWord("val") ? ReadValue() : ReadKey())) {
                return false;
            }
        }
    }

    bool ReadKey()
    {
        if (m_open.size() == kDeepestKey) {
            return Fail("keys too deep inside each other");
        }
        ScriptKey key;
        key.rule = ReadRule();
        const auto name = ReadName();
        if (!name) {
            return false;
        }
        key.path = m_open.empty() ? *name : m_script[m_open.back()].path + u'\\' + *name;
        const bool goesWithParent = !m_open.empty() && m_script[m_open.back()].rule != ScriptRule::NoRemove;
        key.isRemovalRoot = key.rule != ScriptRule::NoRemove && !goesWithParent;
        if (key.rule == ScriptRule::NoRemove && goesWithParent) {
            return Fail("NoRemove below a key that is removed");
        }
        if (m_token.kind == ScriptTokenKind::Equals && !ReadText(key, {})) {
            return false;
        }
        m_script.push_back(std::move(key));
        return ReadOpening();
    }

    ScriptRule ReadRule()
    {
        const ScriptRule rule = IsWord("NoRemove")      ? ScriptRule::NoRemove
                                : IsWord("ForceRemove") ? ScriptRule::ForceRemove
                                                        : ScriptRule::Plain;
        if (rule != ScriptRule::Plain) {
            Advance();
        }
        return rule;
    }

    bool ReadOpening()
    {
        if (m_token.kind != ScriptTokenKind::Open) {
            return true;
        }
        m_open.push_back(m_script.size() - 1);
        Advance();
        return true;
    }

    bool ReadValue()
    {
        if (m_open.empty()) {
            return Fail("a value outside of a key");
        }
        Advance();
        auto name = ReadName();
        if (!name) {
            return false;
        }
        if (m_token.kind != ScriptTokenKind::Equals) {
            return Fail("a value needs = and its text");
        }
        return ReadText(m_script[m_open.back()], std::move(*name));
    }

    std::optional<std::u16string> ReadName()
    {
        if (m_token.kind != ScriptTokenKind::Word && m_token.kind != ScriptTokenKind::Text) {
            Fail("a name is missing");
            return std::nullopt;
        }
        if (m_token.text.empty() || m_token.text.size() > kLongestName ||
            m_token.text.find_first_of("\\%") != std::string::npos) {
            Fail("a name is empty, too long or has \\ or %");
            return std::nullopt;
        }
        std::u16string name(m_token.text.begin(), m_token.text.end());
        Advance();
        return name;
    }

    bool ReadText(ScriptKey& key, std::u16string name)
    {
        Advance();
        if (m_token.kind != ScriptTokenKind::Text) {
            return Fail("a text in quotes is missing");
        }
        auto text = Expand(m_token.text);
        if (!text) {
            return Fail("the only replacement is %MODULE%");
        }
        key.values.push_back({std::move(name), std::move(*text)});
        Advance();
        return true;
    }

    [[nodiscard]] std::optional<std::u16string> Expand(std::string_view text) const
    {
        std::u16string expanded;
        while (!text.empty()) {
            if (text.starts_with(kModule)) {
                expanded += m_modulePath;
                text.remove_prefix(kModule.size());
            } else if (text.front() == '%') {
                return std::nullopt;
            } else {
                expanded += static_cast<char16_t>(text.front());
                text.remove_prefix(1);
            }
        }
        return expanded;
    }

    ScriptTokens m_tokens;
    std::u16string_view m_modulePath;
    ScriptToken m_token{ScriptTokenKind::End, 1};
    RegistryScript m_script;
    std::vector<std::size_t> m_open;
    ScriptError m_error{1, {}};
};

}  // namespace

std::variant<RegistryScript, ScriptError> ReadRegistryScript(std::string_view text, std::u16string_view modulePath)
{
    return Reader(text, modulePath).Read();
}

}  // namespace zupm
