// Where a text has values that must not be shown.
#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "tools/zupolicy/client/contents/TagReader.h"
#include "tools/zupolicy/report/Redaction.h"

namespace zupm::tool {
namespace {

struct AttributeOfField {
    std::string_view attribute;
    std::string_view field;
};
constexpr AttributeOfField kFields[] = {{"DisplayName", "displayName"},
                                        {"TaskType", "type"},
                                        {"Platforms", "platforms"},
                                        {"TaskPriority", "priority"},
                                        {"CreatorID", "creator"}};

/// Follows the tags of a document, and finds what is hidden.
///
/// Whether an entry or setting can be reached does not matter: a second one of a name is a secret like the first. So
/// every element with a name in an element with a name counts as a setting.
class PartFinder {
public:
    PartFinder(const Redaction& redaction, std::string_view document)
        : m_redaction(redaction), m_document(document), m_reader(document)
    {
    }

    std::vector<TextPart> Run()
    {
        std::size_t sound = 0;
        while (const std::optional<Markup> markup = m_reader.Next()) {
            Follow(*markup);
            sound = m_reader.Position();
        }
        if (m_hiddenDepth != 0) {
            Hide(m_hiddenFrom, m_document.size());
        } else if (m_reader.IsBroken()) {
            Hide(sound, m_document.size());
        }
        return std::move(m_parts);
    }

private:
    struct Level {
        std::optional<std::string> name;
        bool isInTasks;
    };
    /// Names lie in the outermost levels; what is further in counts as nameless.
    static constexpr std::size_t kMostLevels = 16;

    void Follow(const Markup& markup)
    {
        if (markup.kind == Markup::Kind::Close) {
            Close();
        } else if (markup.kind == Markup::Kind::Open || markup.kind == Markup::Kind::OpenAndClose) {
            Open(markup);
            if (markup.kind == Markup::Kind::OpenAndClose) {
                Close();
            }
        }
    }

    void Open(const Markup& tag)
    {
        ++m_depth;
        if (m_depth > kMostLevels || m_hiddenDepth != 0) {
            return;
        }
        const bool isInTasks = (!m_levels.empty() && m_levels.back().isInTasks) || tag.text == "TaskRoot";
        const std::optional<std::string> name = AttributeOf(tag.attributes, "name");
        if (name && !m_levels.empty() && m_levels.back().name &&
            m_redaction.HidesSetting(*m_levels.back().name, *name, isInTasks)) {
            m_hiddenDepth = m_depth;
            m_hiddenFrom = m_reader.Position();
        }
        if (tag.text == "TaskGroup") {
            HideFields(tag.attributes);
        }
        m_levels.push_back({name, isInTasks});
    }

    void Close()
    {
        if (m_depth == 0) {
            return;
        }
        if (m_depth == m_hiddenDepth) {
            m_hiddenDepth = 0;
            // An element without content has no end tag of its own, and nothing to hide.
            if (const std::size_t end = m_document.rfind('<', m_reader.Position() - 1); end >= m_hiddenFrom) {
                Hide(m_hiddenFrom, end);
            }
        }
        if (m_levels.size() == m_depth) {
            m_levels.pop_back();
        }
        --m_depth;
    }

    void HideFields(std::string_view attributes)
    {
        while (const std::optional<RawAttribute> attribute = TakeAttribute(attributes)) {
            const auto* const field = std::ranges::find(kFields, attribute->name, &AttributeOfField::attribute);
            if (field != std::end(kFields) && m_redaction.HidesField(field->field)) {
                const auto begin = static_cast<std::size_t>(attribute->value.data() - m_document.data());
                Hide(begin, begin + attribute->value.size());
            }
        }
    }

    void Hide(std::size_t begin, std::size_t end) { m_parts.push_back({begin, end}); }

    const Redaction& m_redaction;
    std::string_view m_document;
    TagReader m_reader;
    std::vector<TextPart> m_parts;
    std::vector<Level> m_levels;
    std::size_t m_depth = 0;
    std::size_t m_hiddenDepth = 0;  ///< of the open element whose content is hidden; 0 for none
    std::size_t m_hiddenFrom = 0;
};

}  // namespace

std::vector<TextPart> HiddenParts(const Redaction& redaction, std::string_view document)
{
    return redaction.IsEmpty() ? std::vector<TextPart>() : PartFinder(redaction, document).Run();
}

}  // namespace zupm::tool
