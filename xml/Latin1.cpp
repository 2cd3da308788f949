#include "xml/Latin1.h"

#include <cstddef>
#include <cstdint>
#include <utility>

#include "text/Transcode.h"
#include "text/Utf.h"
#include "xml/Characters.h"

namespace AdvXMLParser {

namespace {

/// Encodes a well-formed document piece by piece. The piece decides what may replace a character that is missing.
class Latin1Encoder {
public:
    Latin1Encoder(std::string_view utf8, std::string& out) : m_text(utf8), m_out(out)
    {
        m_out.reserve(m_out.size() + utf8.size());
    }

    bool Encode()
    {
        while (m_at < m_text.size()) {
            if (!EncodePiece()) {
                return false;
            }
        }
        return true;
    }

private:
    enum class Substitute { None, Reference, ReferenceOutsideCdata };

    bool EncodePiece()
    {
        const std::string_view rest = m_text.substr(m_at);
        if (rest.front() != '<') {
            return EncodeUpTo(m_text.find('<', m_at), Substitute::Reference);
        }
        if (rest.starts_with(kCdataBegin)) {
            return EncodeUpTo(After(kCdataEnd), Substitute::ReferenceOutsideCdata);
        }
        if (rest.starts_with("<!--")) {
            return EncodeUpTo(After("-->"), Substitute::None);
        }
        if (rest.starts_with("<?")) {
            return EncodeUpTo(After("?>"), Substitute::None);
        }
        return rest.starts_with("<!") ? EncodeDoctype() : EncodeTag();
    }

    /// References are possible in the values between quotes, not in the names.
    bool EncodeTag()
    {
        while (true) {
            const std::size_t stop = m_text.find_first_of("\"'>", m_at);
            const bool isEnd = stop == std::string_view::npos || m_text[stop] == '>';
            if (!EncodeUpTo(stop == std::string_view::npos ? stop : stop + 1, Substitute::None)) {
                return false;
            }
            if (isEnd) {
                return true;
            }
            const std::size_t close = m_text.find(m_text[stop], m_at);
            if (!EncodeUpTo(close == std::string_view::npos ? close : close + 1, Substitute::Reference)) {
                return false;
            }
        }
    }

    /// One piece of the DOCTYPE. Quotes, brackets and comments make the end of the whole hard to find, and no reference
    /// is possible in any of it. Each piece in it begins with '<' again, so one piece at a time is enough.
    bool EncodeDoctype()
    {
        return EncodeUpTo(m_at + 1, Substitute::None) && EncodeUpTo(DoctypePieceEnd(), Substitute::None);
    }

    [[nodiscard]] std::size_t DoctypePieceEnd() const
    {
        // A literal may hold '<' and '>'; the piece ends at the first of them outside quotes.
        char quote = 0;
        for (std::size_t at = m_at; at < m_text.size(); ++at) {
            const char c = m_text[at];
            if (quote != 0) {
                quote = c == quote ? '\0' : quote;
            } else if (c == '"' || c == '\'') {
                quote = c;
            } else if (c == '>' || c == '<') {
                return c == '>' ? at + 1 : at;
            }
        }
        return m_text.size();
    }

    [[nodiscard]] std::size_t After(std::string_view mark) const
    {
        const std::size_t at = m_text.find(mark, m_at);
        return at == std::string_view::npos ? at : at + mark.size();
    }

    bool EncodeUpTo(std::size_t end, Substitute substitute)
    {
        for (const std::size_t stop = end == std::string_view::npos ? m_text.size() : end; m_at < stop;) {
            const zupm::CodePoint point = zupm::CodePointAt(m_text, m_at);
            m_at += point.bytes;
            if (point.value <= 0xFF) {
                m_out += static_cast<char>(point.value);
                continue;
            }
            if (substitute == Substitute::None) {
                return false;
            }
            const std::string reference = "&#" + std::to_string(static_cast<std::uint32_t>(point.value)) + ";";
            m_out += substitute == Substitute::Reference
                         ? reference
                         : std::string(kCdataEnd) + reference + std::string(kCdataBegin);
        }
        return true;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::string& m_out;
};

}  // namespace

bool DecodeLatin1(std::string& bytes)
{
    std::string utf8;
    utf8.reserve(bytes.size());
    zupm::AppendUtf8OfLatin1(bytes, utf8);
    bytes = std::move(utf8);
    return true;
}

bool EncodeLatin1(std::string& text, std::string_view signature)
{
    std::string bytes(signature);
    if (!Latin1Encoder(text, bytes).Encode()) {
        return false;
    }
    text = std::move(bytes);
    return true;
}

}  // namespace AdvXMLParser
