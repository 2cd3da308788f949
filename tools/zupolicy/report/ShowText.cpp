#include "tools/zupolicy/report/ShowText.h"

#include <ostream>
#include <string_view>

#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

/// Prints contents, with every text from the file escaped.
class TextWriter {
public:
    TextWriter(std::ostream& out, const FileContents& contents, const Selection& selection)
        : m_out(out), m_contents(contents), m_selection(selection)
    {
    }

    /// "label           value", or nothing for an empty value.
    void Field(std::string_view indent, std::string_view label, std::string_view value)
    {
        if (value.empty()) {
            return;
        }
        constexpr std::size_t kLabelWidth = 17;
        m_out << indent << label;
        m_out << std::string(label.size() < kLabelWidth ? kLabelWidth - label.size() : 1, ' ');
        Value(value);
        m_out << '\n';
    }

    void Entry(const Policy& policy)
    {
        m_out << "\nPolicy ";
        Value(policy.softwareId);
        m_out << '\n';
        Field("  ", "Version", policy.version);
        Sections(policy.firstSection, policy.endSection, false);
    }

    void Entry(const Task& task)
    {
        m_out << "\nTask ";
        Value(task.softwareId);
        m_out << ' ';
        Value(task.taskId);
        m_out << '\n';
        TaskField("Name", "displayName", task.displayName);
        TaskField("Type", "type", task.type);
        TaskField("Platforms", "platforms", task.platforms);
        TaskField("Priority", "priority", task.priority);
        TaskField("Creator", "creator", task.creator);
        Field("  ", "Version", task.version);
        Sections(task.firstSection, task.endSection, true);
    }

private:
    void Field(std::string_view indent, std::string_view label, Piece value)
    {
        Field(indent, label, m_contents.Text(value));
    }

    void TaskField(std::string_view label, std::string_view name, Piece value)
    {
        const std::string_view text = m_contents.Text(value);
        Field("  ", label, text.empty() ? text : m_selection.redaction.ShownField(name, text));
    }

    void Value(std::string_view text) { WriteVisible(m_out, text, Backslash::Escaped); }
    void Value(Piece piece) { Value(m_contents.Text(piece)); }

    void Sections(std::uint32_t first, std::uint32_t end, bool isTask)
    {
        for (std::uint32_t number = first; m_selection.withSections && number < end; ++number) {
            const Section& section = m_contents.sections[number];
            m_out << "  [";
            Value(section.name);
            m_out << "]\n";
            Settings(section, isTask);
        }
    }

    void Settings(const Section& section, bool isTask)
    {
        for (std::uint32_t number = section.firstSetting; number != kNone;) {
            const Setting& setting = m_contents.settings[number];
            m_out << "    ";
            Value(setting.name);
            m_out << " = ";
            const bool isHidden = m_selection.redaction.HidesSetting(m_contents.Text(section.name),
                                                                     m_contents.Text(setting.name), isTask);
            Value(isHidden ? kHidden : m_contents.Text(setting.value));
            m_out << '\n';
            number = setting.next;
        }
    }

    std::ostream& m_out;
    const FileContents& m_contents;
    const Selection& m_selection;
};

}  // namespace

void WriteContentsAsText(std::ostream& out, const std::string& file, const FileContents& contents,
                         const Selection& selection)
{
    TextWriter writer(out, contents, selection);
    writer.Field("", "File", file);
    writer.Field("", "Policy version", contents.policyVersion);
    writer.Field("", "Task version", contents.taskVersion);
    writer.Field("", "Assignment list", contents.assignmentList);
    const auto writeEach = [&](const auto& records) {
        for (const auto& record : records) {
            if (selection.Has(contents, record)) {
                writer.Entry(record);
            }
        }
    };
    writeEach(contents.policies);
    writeEach(contents.tasks);
}

}  // namespace zupm::tool
