#include "tools/zupolicy/report/PageReport.h"

#include "tools/zupolicy/report/JsonWriter.h"

namespace zupm::tool {

void PageReport::Add(const PageFile& file)
{
    ++m_files;
    for (const PageEntry& entry : file.entries) {
        ++(entry.entry.id.taskId ? m_tasks : m_policies);
    }
    m_problems += file.problems.size() + file.moreProblems;
    if (file.failure) {
        m_failures.push_back(*file.failure);
    }
}

void PageReport::WriteAsJson(std::ostream& out) const
{
    JsonWriter json(out);
    json.BeginDocument();
    json.Member("written", m_written);
    json.Key("files").Number(m_files);
    json.Key("policies").Number(m_policies);
    json.Key("tasks").Number(m_tasks);
    json.Key("problems").Number(m_problems);
    json.Key("failures").BeginArray();
    for (const Problem& problem : m_failures) {
        json.BeginObject();
        WriteProblem(json, problem);
        json.EndObject();
    }
    json.EndArray();
    json.EndObject();
}

}  // namespace zupm::tool
