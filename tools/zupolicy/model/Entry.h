/// What a policy file means: values without order, versions and duplicates.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "tools/zupolicy/model/Named.h"

namespace zupm::model {

/// Which policy (a software ID alone) or task it is. All texts of the model are UTF-8.
struct EntryId {
    std::string softwareId;
    std::optional<std::string> taskId;

    friend bool operator==(const EntryId&, const EntryId&) = default;
    friend bool operator<(const EntryId& left, const EntryId& right)
    {
        return std::tie(left.softwareId, left.taskId) < std::tie(right.softwareId, right.taskId);
    }
};

/// "policy PRODUCTA1000", or "task PRODUCTA1000 {task-1}".
[[nodiscard]] std::string Describe(const EntryId& id);

struct Setting {
    std::string name;
    std::string value;  ///< as it is stored: no macro is expanded
};

struct Section {
    std::string name;
    Named<Setting> settings;
};

/// The fields of a task, in the order in which reports list them, as `show --json` names them.
inline constexpr std::array<std::string_view, 5> kFieldNames = {"displayName", "type", "platforms", "priority",
                                                                "creator"};
enum class Field : std::size_t { DisplayName, Type, Platforms, Priority, Creator };
/// The priority is a decimal number.
using Fields = std::array<std::string, kFieldNames.size()>;

[[nodiscard]] inline const std::string& Get(const Fields& fields, Field field)
{
    return fields[static_cast<std::size_t>(field)];
}
[[nodiscard]] inline std::string& Get(Fields& fields, Field field)
{
    return fields[static_cast<std::size_t>(field)];
}

/// A policy or a task; a policy's fields are empty.
struct Entry {
    EntryId id;
    Fields fields;
    Named<Section> sections;
};

/// An entry that was not in the file before: without sections. A task has its ID as display name, and priority 0.
[[nodiscard]] Entry NewEntry(const EntryId& id);

/// The component repeats fields of a task in settings of its sections "Task" and "General", and makes both sections,
/// whenever the task goes into a file.
///
/// The field that this setting of a task repeats; nothing for any other setting. The task's ID counts as a field.
struct Repeated {
    bool isId = false;
    Field field = Field::DisplayName;
};
[[nodiscard]] std::optional<Repeated> RepeatedBy(std::string_view section, std::string_view name);
/// Calls `call(section, name)` for each setting that repeats the field.
void ForEachRepeating(Field field, const std::function<void(std::string_view, std::string_view)>& call);
/// The text of such a setting.
[[nodiscard]] const std::string& TextOf(const Entry& task, const Repeated& repeated);

/// Takes out of a task what only repeats its fields: those settings, and the sections "Task" and "General" when they
/// hold nothing more. A policy stays as it is.
void DropRepeated(Entry& entry);

}  // namespace zupm::model
