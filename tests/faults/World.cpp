#include "tests/faults/World.h"

#include <stdexcept>

namespace zupm::test {

namespace {

/// Layout, an entry that has never been written by the component ("Path" and "version" missing), two of each kind.
constexpr std::string_view kFile =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<PolicyFile>\n"
    "  <PolicyRoot AssignmentList=\"a list of several words; and one more\">\n"
    "    <PolicyGroup>\n"
    "      <Policy PathID=\"0_4\" PolicyVersion=\"20250101000000\">\n"
    "        <Product SoftwareID=\"PRODUCT-A-1000000000\">\n"
    "          <Section name=\"a section with a long name\">\n"
    "            <Setting name=\"a setting with a long name\">the value that the file has, with ä and "
    "&lt;brackets></Setting>\n"
    "            <Setting name=\"another setting of this section\">untouched</Setting>\n"
    "          </Section>\n"
    "          <Section name=\"another section, with a long name\"/>\n"
    "        </Product>\n"
    "        <Product SoftwareID=\"PRODUCT-B-2000000000\"/>\n"
    "      </Policy>\n"
    "    </PolicyGroup>\n"
    "  </PolicyRoot>\n"
    "  <TaskRoot>\n"
    "    <TaskGroup SoftwareID=\"PRODUCT-A-1000000000\" TaskID=\"{00000000-0000-0000-0000-000000000001}\"\n"
    "        DisplayName=\"the name of the first task\" TaskType=\"the type of the first task\" "
    "TaskVersion=\"20250101000000\">\n"
    "      <Task>\n"
    "        <Section name=\"a section with a long name\">\n"
    "          <Setting name=\"a setting with a long name\">the value that the file has, with ä and "
    "&lt;brackets></Setting>\n"
    "          <Setting name=\"another setting of this section\">untouched</Setting>\n"
    "        </Section>\n"
    "      </Task>\n"
    "    </TaskGroup>\n"
    "    <TaskGroup SoftwareID=\"PRODUCT-A-1000000000\" TaskID=\"{00000000-0000-0000-0000-000000000002}\">\n"
    "      <Task/>\n"
    "    </TaskGroup>\n"
    "  </TaskRoot>\n"
    "</PolicyFile>\n";

template <class Value>
void Append(std::vector<Value>& to, std::vector<Value> more)
{
    to.insert(to.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

}  // namespace

void PrintTo(const Sight& sight, std::ostream* out)
{
    for (const TextResult& text : sight.texts) {
        PrintTo(text, out);
        *out << '\n';
    }
    for (const HRESULT lookup : sight.lookups) {
        *out << lookup << '\n';
    }
    for (const std::string& file : sight.files) {
        *out << file << '\n';
    }
}

World::World(const TempFolder& files)
    : folder(files),
      path(files.Path(kFileName)),
      newPath(files.Path(u"another file.xml")),
      iniPath(files.Path(kIniName))
{
    for (const std::string& name : files.Names()) {
        std::filesystem::remove_all(files.Folder() / name);
    }
    files.Write(kFileName, kFile);
    if (file.Load(path.Text()) != 0) {
        throw std::runtime_error("the file cannot be loaded");
    }
    product = file.Policy(kProduct);
    task = file.Task(kProduct, kTask);
    // Reading a task's data stamps its private copy; the clock does not move, so once is enough.
    static_cast<void>(task.Data());
    tasks = file.Tasks();
    static_cast<void>(tasks.First());
    static_cast<void>(product.PutSection(kSection));
    static_cast<void>(task.Object()->put_Section(section.Get()));
}

Sight World::OfFile() const
{
    const TextResult buffer{0, file.Buffer()};
    return {{buffer, file.VersionTask(), file.VersionPolicy(), file.AssignmentList()},
            {file.FindPolicy(kProduct), file.FindPolicy(kOtherProduct), file.FindPolicy(kNewName),
             file.FindTask(kProduct, kTask), file.FindTask(kProduct, kOtherTask), file.FindTask(kProduct, kNewName)},
            {}};
}

Sight World::OfProduct() const
{
    return {{product.SoftwareID(), product.Data(), product.GetCurrent(kSetting), product.GetCurrent(kOtherSetting),
             product.GetCurrent(kNewName)},
            {},
            {}};
}

Sight World::OfTask() const
{
    IPolicyTask* const members = task.Object();
    OutNumber priority;
    Sight sight{{task.Data(), task.Version(), task.Get(kSection, kSetting), task.Get(kSection, kOtherSetting),
                 task.Get(kSection, kNewName)},
                {members->get_Priority(priority.Slot()), priority.Value()},
                {}};
    using Getter = HRESULT (IPolicyTask::*)(BSTR*);
    for (const Getter getter :
         {&IPolicyTask::get_CreatorID, &IPolicyTask::get_SoftwareID, &IPolicyTask::get_TaskID,
          &IPolicyTask::get_DisplayName, &IPolicyTask::get_TaskType, &IPolicyTask::get_PlatformsSupported}) {
        Bstr field;
        const HRESULT code = (members->*getter)(field.Slot());
        sight.texts.push_back({code, field.Text()});
    }
    Bstr current;
    const HRESULT code = members->GetSetting(setting.Get(), current.Slot());
    sight.texts.push_back({code, current.Text()});
    return sight;
}

Sight World::OfFolder() const
{
    Sight sight;
    for (const std::string& name : folder.Names()) {
        sight.files.push_back(name + ": " + folder.Read(Utf16(name)));
    }
    return sight;
}

Sight World::OfAll() const
{
    Sight all = OfFile();
    for (Sight sight : {OfProduct(), OfTask(), OfFolder()}) {
        Append(all.texts, std::move(sight.texts));
        Append(all.lookups, std::move(sight.lookups));
        Append(all.files, std::move(sight.files));
    }
    return all;
}

PolicyFileClient World::ReadBack() const
{
    const TempFolder elsewhere;
    const std::u16string copy = elsewhere.Write(u"copy.xml", Utf8(file.Buffer().value_or(std::u16string())));
    PolicyFileClient reader;
    if (reader.Load(copy) != 0) {
        throw std::runtime_error("what is in the document cannot be loaded");
    }
    return reader;
}

}  // namespace zupm::test
