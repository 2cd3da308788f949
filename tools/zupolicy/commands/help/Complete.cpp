#include "tools/zupolicy/commands/help/Complete.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string_view>

#include "tools/zupolicy/commands/help/CommandText.h"
#include "tools/zupolicy/commands/help/CompleteName.h"
#include "tools/zupolicy/commands/help/FindCommand.h"

namespace zupm::tool {
namespace {

/// What an argument or the value of an option is.
enum class ValueKind : std::uint8_t { Anything, File, SoftwareId, TaskId, Section, Setting };

/// By its name in the help. What is not listed here is a file.
ValueKind KindOf(std::string_view name)
{
    static constexpr std::pair<std::string_view, ValueKind> kKinds[] = {
        {"SOFTWARE-ID", ValueKind::SoftwareId},
        {"TASK-ID", ValueKind::TaskId},
        {"SECTION", ValueKind::Section},
        {"NAME", ValueKind::Setting},
        {"VALUE", ValueKind::Anything},
        {"TEXT", ValueKind::Anything},
        {"INT", ValueKind::Anything},
        {"UINT", ValueKind::Anything},
        {"N", ValueKind::Anything},
        {"SECONDS", ValueKind::Anything},
        {"COUNT", ValueKind::Anything},
        {"SUFFIX", ValueKind::Anything},
        {"PATTERN", ValueKind::Anything},
        {"BACKUP", ValueKind::Anything},
        {"TITLE", ValueKind::Anything},
        {"ID", ValueKind::Anything},
    };
    const auto* const found = std::ranges::find(kKinds, name, &std::pair<std::string_view, ValueKind>::first);
    return found == std::end(kKinds) ? ValueKind::File : found->second;
}

ValueKind KindOf(const OptionText& option)
{
    if (option.Has("--task")) {
        return ValueKind::TaskId;
    }
    return option.Has("--software") ? ValueKind::SoftwareId : KindOf(option.value);
}

NameKind NameKindOf(ValueKind kind)
{
    switch (kind) {
        case ValueKind::SoftwareId:
            return NameKind::SoftwareId;
        case ValueKind::TaskId:
            return NameKind::TaskId;
        case ValueKind::Section:
            return NameKind::Section;
        default:
            return NameKind::Setting;
    }
}

/// The arguments of one command, as far as they are typed.
class TypedLine {
public:
    TypedLine(const Command& command, const std::vector<std::string>& words);

    [[nodiscard]] Completion Complete(const std::string& current) const;

private:
    void Take(const std::string& word);
    void TakeLongOption(const std::string& word);
    void TakeShortOptions(const std::string& word);
    void TakeArgument(const std::string& word);
    void Remember(ValueKind kind, const std::string& value);

    /// The declaration of the next argument; null when there is none.
    [[nodiscard]] const ArgumentText* Next() const;
    [[nodiscard]] Completion Options(const std::string& start) const;
    [[nodiscard]] Completion Values(const OptionText& option, const std::string& start) const;
    [[nodiscard]] Completion Names(ValueKind kind, const std::string& start) const;

    CommandText m_command;
    std::size_t m_arguments = 0;            ///< how many were given
    const OptionText* m_pending = nullptr;  ///< waits for its value
    std::vector<const OptionText*> m_given;
    bool m_endedOptions = false;               ///< by "--"
    std::map<ValueKind, std::string> m_known;  ///< what the names that are sought belong to
};

TypedLine::TypedLine(const Command& command, const std::vector<std::string>& words) : m_command(TextOf(command))
{
    for (auto word = words.begin() + 1; word != words.end(); ++word) {
        Take(*word);
    }
}

void TypedLine::Take(const std::string& word)
{
    if (m_pending != nullptr) {
        Remember(KindOf(*m_pending), word);
        m_pending = nullptr;
    } else if (m_endedOptions || word.size() < 2 || word.front() != '-') {
        TakeArgument(word);
    } else if (word == "--") {
        m_endedOptions = true;
    } else if (word[1] == '-') {
        TakeLongOption(word);
    } else {
        TakeShortOptions(word);
    }
}

void TypedLine::TakeLongOption(const std::string& word)
{
    const std::size_t equals = word.find('=');
    const OptionText* const option = m_command.Find(word.substr(0, equals));
    if (option == nullptr) {
        return;
    }
    m_given.push_back(option);
    if (equals != std::string::npos) {
        Remember(KindOf(*option), word.substr(equals + 1));
    } else if (option->TakesNextWord()) {
        m_pending = option;
    }
}

void TypedLine::TakeShortOptions(const std::string& word)
{
    for (std::size_t at = 1; at < word.size(); ++at) {
        const OptionText* const option = m_command.Find(std::string("-") + word[at]);
        if (option == nullptr) {
            // A negative number is an argument.
            if (at == 1) {
                TakeArgument(word);
            }
            return;
        }
        m_given.push_back(option);
        if (option->TakesNextWord()) {
            m_pending = at + 1 == word.size() ? option : nullptr;
            return;
        }
    }
}

void TypedLine::TakeArgument(const std::string& word)
{
    if (const ArgumentText* const argument = Next()) {
        Remember(KindOf(argument->name), word);
    }
    ++m_arguments;
}

void TypedLine::Remember(ValueKind kind, const std::string& value)
{
    // Of several files the first is the one that names are taken from.
    m_known.emplace(kind, value);
}

const ArgumentText* TypedLine::Next() const
{
    const std::vector<ArgumentText>& arguments = m_command.arguments;
    const auto repeated = std::ranges::find_if(arguments, &ArgumentText::repeats);
    const auto last = static_cast<std::size_t>(repeated - arguments.begin());
    const std::size_t number = std::min(m_arguments, last);
    return number < arguments.size() ? &arguments[number] : nullptr;
}

Completion TypedLine::Complete(const std::string& current) const
{
    if (m_pending != nullptr) {
        return Values(*m_pending, current);
    }
    if (!m_endedOptions && current.starts_with('-')) {
        const std::size_t equals = current.find('=');
        const OptionText* const option = m_command.Find(current.substr(0, equals));
        if (equals == std::string::npos || option == nullptr) {
            return Options(current);
        }
        Completion completion = Values(*option, current.substr(equals + 1));
        for (Candidate& candidate : completion.candidates) {
            candidate.text.insert(0, current, 0, equals + 1);
        }
        return completion;
    }
    const ArgumentText* const argument = Next();
    return argument == nullptr ? Completion{} : Names(KindOf(argument->name), current);
}

Completion TypedLine::Options(const std::string& start) const
{
    Completion completion;
    for (const OptionText& option : m_command.options) {
        const bool isGiven = std::ranges::find(m_given, &option) != m_given.end();
        if (isGiven && !option.repeats) {
            continue;
        }
        for (const std::string& name : option.names) {
            if (name.starts_with(start)) {
                completion.candidates.push_back({name, option.description});
            }
        }
    }
    return completion;
}

Completion TypedLine::Values(const OptionText& option, const std::string& start) const
{
    if (option.choices.empty()) {
        return option.value.empty() ? Completion{} : Names(KindOf(option), start);
    }
    Completion completion;
    for (const std::string& choice : option.choices) {
        if (choice.starts_with(start)) {
            completion.candidates.push_back({choice, {}});
        }
    }
    return completion;
}

Completion TypedLine::Names(ValueKind kind, const std::string& start) const
{
    if (kind == ValueKind::File || kind == ValueKind::Anything) {
        return {{}, kind == ValueKind::File};
    }
    const auto known = [&](ValueKind of) {
        const auto found = m_known.find(of);
        return found == m_known.end() ? std::string() : found->second;
    };
    NamePlace place{known(ValueKind::File), known(ValueKind::SoftwareId), known(ValueKind::TaskId),
                    known(ValueKind::Section)};
    const bool isAboutTask = m_known.contains(ValueKind::TaskId);
    // A search without a task goes through policies and tasks; an entry without a task is a policy.
    const bool isSearch = m_command.Find("--software") != nullptr;
    place.hasPolicies = !isAboutTask;
    place.hasTasks = isAboutTask || isSearch || kind == ValueKind::TaskId;
    Completion completion{NamesIn(place, NameKindOf(kind), start), false};
    // Without the "--" before it the parser takes such a name for an option.
    if (!m_endedOptions) {
        std::erase_if(completion.candidates,
                      [](const Candidate& candidate) { return candidate.text.starts_with('-'); });
    }
    return completion;
}

Completion CompleteCommand(const std::string& start, bool isFirst)
{
    std::vector<Candidate> all;
    for (const Command* command : kCommands) {
        all.push_back({command->name, command->description});
    }
    if (isFirst) {
        all.push_back({"help", "Explain the program, or one command"});
    }
    if (isFirst && start.starts_with('-')) {
        all.push_back({"--help", "Explain the program"});
        all.push_back({"--version", "Print the version"});
    }
    if (!isFirst && start.starts_with('-')) {
        all.push_back({"--json", "Print JSON"});
        all.push_back({"--man", "Print the source of the manual page"});
    }
    std::erase_if(all, [&](const Candidate& candidate) { return !candidate.text.starts_with(start); });
    return {all, false};
}

}  // namespace

Completion Complete(const std::vector<std::string>& words, const std::string& current)
{
    if (words.empty()) {
        return CompleteCommand(current, true);
    }
    if (words.front() == "help") {
        return words.size() == 1 ? CompleteCommand(current, false) : Completion{};
    }
    const Command* const command = FindCommand(words.front());
    return command == nullptr ? Completion{} : TypedLine(*command, words).Complete(current);
}

}  // namespace zupm::tool
