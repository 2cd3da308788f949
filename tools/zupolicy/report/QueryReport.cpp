#include "tools/zupolicy/report/QueryReport.h"

#include <algorithm>
#include <ostream>
#include <set>
#include <string_view>
#include <utility>

#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

std::string Files(std::size_t count)
{
    return std::to_string(count) + (count == 1 ? " file" : " files");
}

}  // namespace

void QueryText::Add(const QueryResult& result)
{
    for (const model::Match& match : result.matches) {
        WriteVisible(m_out, result.file, Backslash::Kept);
        m_out << ": " << Visible(Describe(match.id)) << ' ' << Visible(match.section) << '/' << Visible(match.name)
              << ": \"" << Visible(match.value) << "\"\n";
    }
}

void QueryTable::Add(const QueryResult& result)
{
    for (const model::Match& match : result.matches) {
        m_out << Visible(result.file) << '\t' << Visible(match.id.softwareId) << '\t'
              << Visible(match.id.taskId.value_or("")) << '\t' << Visible(match.section) << '\t' << Visible(match.name)
              << '\t' << Visible(match.value) << '\n';
    }
}

QueryJson::QueryJson(std::ostream& out) : m_json(out)
{
    m_json.BeginDocument();
    m_json.Key("results").BeginArray();
}

void QueryJson::Add(const QueryResult& result)
{
    for (const model::Match& match : result.matches) {
        m_json.BeginObject();
        m_json.Member("file", result.file);
        m_json.Member("softwareId", match.id.softwareId);
        m_json.Key("taskId").TextOrNull(match.id.taskId);
        m_json.Member("section", match.section);
        m_json.Member("name", match.name);
        m_json.Member("value", match.value);
        m_json.EndObject();
    }
    if (result.problem) {
        m_json.BeginObject();
        WriteProblem(m_json, *result.problem);
        m_json.EndObject();
    }
}

void QueryJson::End()
{
    m_json.EndArray();
    m_json.EndObject();
}

void QueryCount::Add(const QueryResult& result)
{
    std::set<std::string_view> values;
    for (const model::Match& match : result.matches) {
        values.insert(match.value);
    }
    for (const std::string_view value : values) {
        ++m_files[std::string(value)];
    }
    m_without += std::size_t{!result.problem && values.empty()};
}

void QueryCount::End()
{
    std::vector<std::pair<std::string, std::size_t>> rows;
    for (const auto& [value, count] : m_files) {
        rows.emplace_back("\"" + Visible(value) + "\"", count);
    }
    if (m_without != 0) {
        rows.emplace_back("(none)", m_without);
    }
    std::ranges::stable_sort(rows, std::greater(), &std::pair<std::string, std::size_t>::second);
    for (const auto& [value, count] : rows) {
        m_out << value << ": " << Files(count) << '\n';
    }
}

}  // namespace zupm::tool
