#include "platform/Modules.h"

#include <dlfcn.h>
#include <link.h>

#include <charconv>
#include <map>
#include <new>
#include <utility>

#include "platform/Files.h"
#include "text/Utf.h"

namespace zupm {

namespace {

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

/// Takes the text up to a separator off the front; the whole text when there is none.
std::string_view TakeUpTo(std::string_view& text, char separator)
{
    const std::size_t end = text.find(separator);
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
    return taken;
}

template <class Number>
bool ReadNumber(std::string_view digits, int base, Number& number)
{
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number, base);
    return error == std::errc() && stop == end;
}

/// Adds the text of one line `number<TAB>text`; false when it is none, or when the number stood there before.
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

/// Of a line of the process's memory map: the file, when the line's range holds the address.
std::string_view MappedFile(std::string_view line, std::uintptr_t address)
{
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    const bool isRange = ReadNumber(TakeUpTo(line, '-'), 16, begin) && ReadNumber(TakeUpTo(line, ' '), 16, end);
    const std::size_t path = line.find('/');
    if (!isRange || address < begin || address >= end || path == line.npos) {
        return {};
    }
    return line.substr(path);
}

/// The mapped file's full path, whatever the current folder was and is.
std::string MappedFileAt(const void* address)
{
    std::string map;
    if (ReadWholeFile(u"/proc/self/maps", map) != result::Success) {
        return {};
    }
    for (std::string_view rest = map; !rest.empty();) {
        const std::string_view file = MappedFile(TakeUpTo(rest, '\n'), reinterpret_cast<std::uintptr_t>(address));
        if (!file.empty()) {
            return std::string(file);
        }
    }
    return {};
}

/// Lies in the module that is asked for.
constinit const char g_marker = 0;

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

std::u16string OwnModulePath()
{
    Dl_info info;
    void* map = nullptr;
    std::string path;
    if (dladdr1(&g_marker, &info, &map, RTLD_DL_LINKMAP) != 0) {
        path = static_cast<const link_map*>(map)->l_name;
    }
    // The program itself has no name here, and a module loaded by a relative path has one that depends on the folder
    // that was current then.
    if (!path.starts_with('/')) {
        path = MappedFileAt(&g_marker);
    }
    return ToUtf16(path).value_or(std::u16string());
}

std::u16string OwnModuleFolder()
{
    std::u16string path = OwnModulePath();
    const std::size_t separator = path.rfind(u'/');
    path.resize(separator == path.npos ? 0 : separator);
    return path;
}

}  // namespace zupm
