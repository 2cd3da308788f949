#include "notices/Notices.h"

namespace zupm {

namespace {

constexpr std::size_t kLongestName = 200;

/// A name for a sentence, cut between two characters.
std::string Shortened(std::string_view name)
{
    if (name.size() <= kLongestName) {
        return std::string(name);
    }
    std::size_t length = kLongestName;
    while (length > 0 && (static_cast<unsigned char>(name[length]) & 0xC0U) == 0x80U) {
        --length;
    }
    return std::string(name.substr(0, length)) + "...";
}

std::string OfTwo(const std::string& later, const std::string& first)
{
    return later + " and " + first + " have the same name in an INI file; only one is kept";
}

}  // namespace

std::string_view Notices::SoftwareId(std::size_t index) const noexcept
{
    return Text(m_entries[m_notices[index].entry].softwareId);
}

std::string_view Notices::TaskId(std::size_t index) const noexcept
{
    return Text(m_entries[m_notices[index].entry].taskId);
}

std::string Notices::Sentence(std::size_t index) const
{
    const Notice& notice = m_notices[index];
    const Subjects& subjects = m_subjects[notice.subjects];
    const std::string first(Text(subjects.first));
    const std::string second(Text(subjects.second));
    switch (notice.kind) {
        case NoticeKind::PolicyAgain:
            return "policy " + Shortened(SoftwareId(index)) + " occurs again; only the first is used";
        case NoticeKind::TaskAgain:
            return "task " + Shortened(SoftwareId(index)) + " " + Shortened(TaskId(index)) +
                   " occurs again; only the first is used";
        case NoticeKind::SectionAgain:
            return "section " + first + " occurs again; both are read as one";
        case NoticeKind::SettingAgain:
            return "setting " + first + " of section " + second + " occurs again; only the first is used";
        case NoticeKind::NoRoots:
            return "the file has neither a PolicyRoot nor a TaskRoot element; it may not be a policy file";
        case NoticeKind::NotANumber:
            return "attribute " + first + " is not a number: \"" + second + "\"";
        case NoticeKind::SameInIni:
            return OfTwo(SettingOf(subjects), SettingOf(m_subjects[notice.subjects + 1]));
        case NoticeKind::SameAsField:
            return OfTwo(SettingOf(subjects),
                         "the task's field " + std::string(Text(m_subjects[notice.subjects + 1].first)));
    }
    return {};
}

std::string Notices::SettingOf(const Subjects& subjects) const
{
    return "setting " + std::string(Text(subjects.first)) + " of section " + std::string(Text(subjects.second));
}

NoticeText Notices::Keep(std::string_view text)
{
    const NoticeText kept{static_cast<std::uint32_t>(m_texts.size()), static_cast<std::uint32_t>(text.size())};
    m_texts.append(text);
    return kept;
}

NoticeText Notices::KeepName(std::string_view name)
{
    return Keep(Shortened(name));
}

std::uint32_t Notices::AddEntry(const Entry& entry)
{
    m_entries.push_back(entry);
    return static_cast<std::uint32_t>(m_entries.size() - 1);
}

void Notices::Add(NoticeKind kind, const AdvXMLParser::Position& position, std::uint32_t entry,
                  const Subjects& subjects)
{
    m_notices.push_back({kind, position, entry, static_cast<std::uint32_t>(m_subjects.size())});
    m_subjects.push_back(subjects);
}

void Notices::AddInFront(NoticeKind kind, const AdvXMLParser::Position& position)
{
    m_notices.push_front({kind, position, 0, static_cast<std::uint32_t>(m_subjects.size())});
    m_subjects.emplace_back();
}

void Notices::AddPair(NoticeKind kind, const AdvXMLParser::Position& position, std::uint32_t entry,
                      const Subjects& later, const Subjects& first)
{
    Add(kind, position, entry, later);
    m_subjects.push_back(first);
}

}  // namespace zupm
