#include "tools/zupolicy/client/Notices.h"

#include "tools/zupolicy/client/Utf8.h"

namespace zupm::tool {
namespace {

// Kinds of notices.
constexpr LONG kSameInIni = 7;
constexpr LONG kSameAsField = 8;

}  // namespace

Notices::Notices(ComPtr<IPolicyNotices> list, std::string file)
    : m_list(std::move(list)), m_subject{std::move(file), {}}
{
    Check(m_list->get_Count(&m_count), m_subject);
}

Notice Notices::At(LONG index) const
{
    LONG line = 0;
    LONG column = 0;
    Bstr text;
    Check(m_list->get_Line(index, &line), m_subject);
    Check(m_list->get_Column(index, &column), m_subject);
    Check(m_list->get_Text(index, text.Slot()), m_subject);
    return {static_cast<std::uint64_t>(line), static_cast<std::uint64_t>(column), ToUtf8(text.Text())};
}

bool Notices::IsLossOf(const Target& task, LONG index) const
{
    LONG kind = 0;
    Check(m_list->get_Kind(index, &kind), m_subject);
    if (kind != kSameInIni && kind != kSameAsField) {
        return false;
    }
    Bstr softwareId;
    Bstr taskId;
    Check(m_list->get_SoftwareID(index, softwareId.Slot()), m_subject);
    Check(m_list->get_TaskID(index, taskId.Slot()), m_subject);
    return ToUtf8(softwareId.Text()) == task.softwareId && ToUtf8(taskId.Text()) == task.taskId;
}

}  // namespace zupm::tool
