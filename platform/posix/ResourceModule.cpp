#include "platform/Modules.h"

#include <map>
#include <new>
#include <utility>

#include "platform/Files.h"
#include "platform/posix/TextFields.h"
#include "text/Utf.h"

namespace zupm {

namespace {

using namespace native;

using Texts = std::map<std::uint32_t, std::u16string>;

class TextResourceModule final : public ResourceModule {
public:
    explicit TextResourceModule(Texts texts) noexcept : m_texts(std::move(texts)) {}

    [[nodiscard]] std::optional<std::u16string> FindString(std::uint32_t id) const override
    {
        const auto text = m_texts.find(id);
        return text == m_texts.end() ? std::nullopt : std::optional<std::u16string>(text->second);
    }

private:
    const Texts m_texts;
};

/// Adds the text of one line `number<TAB>text`; false when it is none, or when an earlier line has the number.
bool AddLine(std::string_view line, Texts& texts)
{
    if (line.find('\t') == line.npos || line.find_first_of(std::string_view("\0\r", 2)) != line.npos) {
        return false;
    }
    std::uint32_t id = 0;
    if (!ReadNumber(TakeUpTo(line, '\t'), 10, id)) {
        return false;
    }
    std::optional<std::u16string> text = ToUtf16(line);
    return text && texts.emplace(id, *std::move(text)).second;
}

}  // namespace

std::shared_ptr<const ResourceModule> LoadResourceModule(std::u16string_view fullPath)
{
    if (!fullPath.starts_with(u'/')) {
        return nullptr;
    }
    std::string bytes;
    const result::Code read = ReadWholeFile(fullPath, bytes);
    if (read == result::OutOfMemory) {
        throw std::bad_alloc();
    }
    if (read < 0) {
        return nullptr;
    }
    Texts texts;
    for (std::string_view rest = bytes; !rest.empty();) {
        if (!AddLine(TakeUpTo(rest, '\n'), texts)) {
            return nullptr;
        }
    }
    return texts.empty() ? nullptr : std::make_shared<const TextResourceModule>(std::move(texts));
}

std::u16string_view PackageFolder() noexcept
{
    return u"zuPolicyManager";
}

std::u16string OwnModuleFolder()
{
    std::u16string path = OwnModulePath();
    const std::size_t separator = path.rfind(u'/');
    path.resize(separator == path.npos ? 0 : separator);
    return path;
}

}  // namespace zupm
