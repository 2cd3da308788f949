/// What `query` prints.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/zupolicy/model/Search.h"
#include "tools/zupolicy/report/JsonWriter.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {

/// What one file has; or why it cannot be read.
struct QueryResult {
    std::string file;
    std::vector<model::Match> matches;
    std::optional<Problem> problem;
};

/// Takes the results of all files, one by one.
class QueryReport {
public:
    QueryReport() = default;
    QueryReport(const QueryReport&) = delete;
    QueryReport& operator=(const QueryReport&) = delete;
    virtual ~QueryReport() = default;

    virtual void Add(const QueryResult& result) = 0;
    virtual void End() {}
};

/// `policy.xml: policy PRODUCTA1000 General/ScanInterval: "60"`.
class QueryText final : public QueryReport {
public:
    explicit QueryText(std::ostream& out) : m_out(out) {}
    void Add(const QueryResult& result) override;

private:
    std::ostream& m_out;
};

/// Six columns: file, software ID, task ID, section, name, value. Tabs and line breaks in them are escaped.
class QueryTable final : public QueryReport {
public:
    explicit QueryTable(std::ostream& out) : m_out(out) {}
    void Add(const QueryResult& result) override;

private:
    std::ostream& m_out;
};

class QueryJson final : public QueryReport {
public:
    explicit QueryJson(std::ostream& out);
    void Add(const QueryResult& result) override;
    void End() override;

private:
    JsonWriter m_json;
};

/// `"60": 12 files`, the value of most files first. Only the values are kept, not where they are.
class QueryCount final : public QueryReport {
public:
    explicit QueryCount(std::ostream& out) : m_out(out) {}
    void Add(const QueryResult& result) override;
    void End() override;

private:
    std::ostream& m_out;
    std::map<std::string, std::size_t> m_files;  ///< by value
    std::size_t m_without = 0;                   ///< files without a match
};

}  // namespace zupm::tool
