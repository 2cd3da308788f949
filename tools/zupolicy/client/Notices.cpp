#include "tools/zupolicy/client/Notices.h"

#include "tools/zupolicy/client/Utf8.h"

namespace zupm::tool {
namespace {

// Kinds of notices.
constexpr LONG kSamePolicy = 1;
constexpr LONG kSameTask = 2;
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

LONG Notices::KindOf(LONG index) const
{
    LONG kind = 0;
    Check(m_list->get_Kind(index, &kind), m_subject);
    return kind;
}

std::string Notices::SoftwareIdOf(LONG index) const
{
    Bstr id;
    Check(m_list->get_SoftwareID(index, id.Slot()), m_subject);
    return ToUtf8(id.Text());
}

std::string Notices::TaskIdOf(LONG index) const
{
    Bstr id;
    Check(m_list->get_TaskID(index, id.Slot()), m_subject);
    return ToUtf8(id.Text());
}

bool Notices::IsRepeatedEntry(const std::optional<std::string>& softwareId, const std::optional<std::string>& taskId,
                              LONG index) const
{
    const LONG kind = KindOf(index);
    return (kind == kSamePolicy || kind == kSameTask) && (!softwareId || SoftwareIdOf(index) == *softwareId) &&
           (!taskId || (kind == kSameTask && TaskIdOf(index) == *taskId));
}

bool Notices::IsLossOf(const Target& task, LONG index) const
{
    const LONG kind = KindOf(index);
    return (kind == kSameInIni || kind == kSameAsField) && SoftwareIdOf(index) == task.softwareId &&
           TaskIdOf(index) == task.taskId;
}

}  // namespace zupm::tool
