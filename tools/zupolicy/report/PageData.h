/// What a page of HTML holds about policy files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "tools/zupolicy/model/Entry.h"
#include "tools/zupolicy/report/JsonWriter.h"
#include "tools/zupolicy/report/Problem.h"
#include "tools/zupolicy/report/Redaction.h"

namespace zupm::tool {

/// What is wrong with a file that can be read.
struct PageProblem {
    enum class Severity : std::uint8_t { Error, Warning };

    Severity severity = Severity::Warning;
    std::uint64_t line = 0;
    std::uint64_t column = 0;
    std::string message;
};

struct PageEntry {
    model::Entry entry;
    std::string version;
};

/// One file, read.
struct PageFile {
    std::string name;
    std::string policyVersion;
    std::string taskVersion;
    std::string assignmentList;
    std::vector<PageEntry> entries;
    std::vector<PageProblem> problems;
    std::size_t moreProblems = 0;    ///< that are not in `problems`
    std::optional<Problem> failure;  ///< why it could not be read; there is nothing more then
};

/// What is said about all files.
struct PageHead {
    enum class Kind : std::uint8_t { Files, Differences };

    Kind kind = Kind::Files;
    std::string title;
    bool ignoreVersions = false;
    std::string edits;  ///< from the first file to the second, as `diff --json` prints them
};

/// Many files, with every text once.
///
/// A file is the number of its shape, which is a list of keys, and a value for each of them. A key is one thing that a
/// policy or task may have. Files that were made alike have one shape. Hidden values are not in it.
class PageData {
public:
    /// How much a page says about hidden values.
    enum class Hidden {
        Alike,      ///< nothing: all of them are the same text
        Different,  ///< which of them are equal
    };

    explicit PageData(Redaction redaction = {}, Hidden hidden = Hidden::Alike)
        : m_redaction(std::move(redaction)), m_hidden(hidden)
    {
    }

    void Add(const PageFile& file);
    /// One JSON document, which a script element can hold.
    void Write(std::ostream& out, const PageHead& head) const;

private:
    using Number = std::uint32_t;
    enum class Kind : Number { Version, Field, Section, Setting };
    /// Entry, kind, section, name; a field has no section, a section that is empty has no name.
    using Key = std::tuple<Number, Kind, Number, Number>;

    /// Things that have the numbers in which they were first seen.
    template <class Thing>
    struct Numbers {
        Number Of(const Thing& thing)
        {
            const auto [place, isNew] = numbers.try_emplace(thing, static_cast<Number>(order.size()));
            if (isNew) {
                order.push_back(&place->first);
            }
            return place->second;
        }
        std::map<Thing, Number> numbers;
        std::vector<const Thing*> order;
    };

    struct File {
        Number name = 0;
        Number policyVersion = 0;
        Number taskVersion = 0;
        Number assignmentList = 0;
        Number shape = 0;
        std::size_t firstValue = 0;  ///< in `m_values`; as many as the shape has keys
        std::vector<PageProblem> problems;
        std::size_t moreProblems = 0;
        std::optional<Problem> failure;
    };

    /// The keys and values of a file while it is added.
    struct Contents;

    Number Text(std::string_view text);
    Number Value(std::string_view value, bool isHidden);
    [[nodiscard]] bool IsHidden(const Key& key) const;
    void AddEntry(const PageEntry& added, Contents& contents);
    void WriteTables(JsonWriter& json) const;
    void WriteFiles(JsonWriter& json) const;

    Redaction m_redaction;
    Hidden m_hidden;
    std::deque<std::string> m_texts;
    std::unordered_map<std::string_view, Number> m_textNumbers;  ///< of `m_texts`
    std::map<std::string, Number, std::less<>> m_hiddenNumbers;  ///< of hidden values, whose texts are kHidden
    Numbers<std::pair<Number, std::optional<Number>>> m_entries;
    Numbers<Key> m_keys;
    Numbers<std::vector<Number>> m_shapes;
    std::vector<Number> m_values;  ///< of all files, in one piece
    std::vector<File> m_files;
};

}  // namespace zupm::tool
