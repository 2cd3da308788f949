// Reading and changing what a hostile file holds.
#include <filesystem>
#include <initializer_list>
#include <string>

#include "tests/limits/Attack.h"

namespace zupm::test {

namespace {

// --- files -----------------------------------------------------------------------------------------------------------

std::string InProduct(const std::string& content)
{
    return std::string(kBeforeContent) + content + std::string(kAfterContent);
}

std::string InTask(const std::string& content)
{
    return std::string(kBeforeTasks) + "<TaskGroup SoftwareID='P' TaskID='T'><Task>" + content + "</Task></TaskGroup>" +
           std::string(kAfterTasks);
}

std::string Setting(std::size_t number)
{
    return "<Setting name='" + Letters(number) + "'>v</Setting>";
}

std::string Section(std::size_t number)
{
    return "<Section name='" + Letters(number) + "'>" + Setting(0) + "</Section>";
}

std::string Sections(std::size_t size)
{
    return Series(kBeforeContent, Section, kAfterContent, size);
}

std::string SectionsOfOneName(std::size_t size)
{
    const auto section = [](std::size_t number) { return "<Section name='S'>" + Setting(number) + "</Section>"; };
    return Series(kBeforeContent, section, kAfterContent, size);
}

std::string SettingsOfOneSection(std::size_t size)
{
    return InProduct("<Section name='a'>" + Series("", Setting, "", size) + "</Section>");
}

/// Every duplicate is compared, and may be logged, with the long name of its section.
std::string SettingsOfOneName(std::size_t size)
{
    return InProduct("<Section name='" + std::string(size / 2, 's') + "'>" + Repeated("<x name=''/>", size / 2) +
                     "</Section>");
}

/// The same name after different numbers of blanks: one name in an INI file.
std::string SettingOfOneIniName(std::size_t number)
{
    std::string blanks;
    for (std::size_t left = number + 1; left > 1; left /= 2) {
        blanks += left % 2 == 0 ? " " : "&#9;";
    }
    return "<x name='" + blanks + "k'>" + Letters(number) + "</x>";
}

std::string SettingsOfOneIniName(std::size_t size)
{
    return InTask("<Section name='a'>" + Series("", SettingOfOneIniName, "", size) + "</Section>");
}

/// Each name is compared with the first one, which is mostly blanks.
std::string SettingsOfOneLongIniName(std::size_t size)
{
    const std::string first = "<x name='" + std::string(size / 2, ' ') + "k'>v</x>";
    return InTask("<Section name='a'>" + first + Series("", SettingOfOneIniName, "", size / 2) + "</Section>");
}

std::string TaskOfManySettings(std::size_t size)
{
    return InTask("<Section name='a'>" + Series("", Setting, "", size) + "</Section>");
}

std::string TaskOfManySections(std::size_t size)
{
    return InTask(Series("", Section, "", size));
}

std::string DeepProduct(std::size_t size)
{
    const std::size_t levels = size / 7;
    return InProduct(Section(0) + Repeated("<d>", levels * 3) + Repeated("</d>", levels * 4));
}

/// A new element is placed like its siblings, after a line with that much white space.
std::string LongIndentation(std::size_t size)
{
    const std::string line = "\n" + std::string(size / 4, ' ');
    return "<F><PolicyRoot><PolicyGroup><Policy>" + line + "<Product SoftwareID='P'/>" + line +
           "</Policy></PolicyGroup></PolicyRoot>" + "<TaskRoot>" + line + "<TaskGroup/>" + line + "</TaskRoot></F>";
}

std::string ManyTasks(std::size_t size)
{
    const auto task = [](std::size_t number) {
        return "\n    <TaskGroup SoftwareID='P' TaskID='" + Letters(number) + "'>\n      <Task/>\n    </TaskGroup>";
    };
    return Series(kBeforeTasks, task, kAfterTasks, size);
}

// --- calls -----------------------------------------------------------------------------------------------------------

/// The first code that is not 0.
HRESULT First(std::initializer_list<HRESULT> codes)
{
    for (const HRESULT code : codes) {
        if (code != 0) {
            return code;
        }
    }
    return 0;
}

/// Loads the file and calls `edit` with it and its product P.
template <class Edit>
HRESULT WithProduct(const std::u16string& path, Edit edit)
{
    PolicyFileClient file;
    ProductClient product;
    if (const HRESULT code = First({file.Load(path), file.GetPolicy(u"P", product)}); code != 0) {
        return code;
    }
    return edit(file, product);
}

template <class Edit>
HRESULT WithTask(const std::u16string& path, Edit edit)
{
    PolicyFileClient file;
    TaskClient task;
    if (const HRESULT code = First({file.Load(path), file.GetTask(u"P", u"T", task)}); code != 0) {
        return code;
    }
    return edit(file, task);
}

std::u16string Wide(const std::string& letters)
{
    return {letters.begin(), letters.end()};
}

HRESULT ReadEverySection(const std::u16string& path)
{
    return WithProduct(path, [](PolicyFileClient&, ProductClient& product) {
        HRESULT code = 0;
        std::size_t read = 0;
        while ((code = product.Get(Wide(Letters(read)), u"a").code) == 0) {
            ++read;
        }
        return read > 1 ? 0 : code;
    });
}

HRESULT ChangeProduct(const std::u16string& path)
{
    return WithProduct(path, [&](PolicyFileClient& file, ProductClient& product) {
        return First({product.Put(u"new", u"new", u"value"), product.Put(u"new", u"new", u"other"), file.Add(product),
                      file.Write(path + u".out")});
    });
}

HRESULT RemoveFromProduct(const std::u16string& path)
{
    return WithProduct(path, [&](PolicyFileClient& file, ProductClient& product) {
        return First({product.RemoveSetting(u"a", u"a"), product.RemoveSection(u"a"), file.Add(product),
                      file.Write(path + u".out")});
    });
}

/// Values as long as the file. Each character of one of them takes five in the document.
HRESULT PutHugeValues(const std::u16string& path)
{
    const auto size = static_cast<std::size_t>(std::filesystem::file_size(path));
    return WithProduct(path, [&](PolicyFileClient& file, ProductClient& product) {
        return First({product.Put(u"S", u"N", std::u16string(size, u'v')),
                      product.Put(u"S", u"N", std::u16string(size / 5, u'&')), file.Add(product)});
    });
}

HRESULT ChangeTask(const std::u16string& path)
{
    return WithTask(path, [&](PolicyFileClient& file, TaskClient& task) {
        return First(
            {task.Put(u"new", u"new", u"value"), task.Data().code, file.Add(task), file.Write(path + u".out")});
    });
}

HRESULT AddTwoTasks(const std::u16string& path)
{
    PolicyFileClient file;
    return First({file.Load(path), file.Add(file.NewTask(u"NEW", u"1")), file.Add(file.NewTask(u"NEW", u"2")),
                  file.Write(path + u".out")});
}

HRESULT AddAndRemoveTask(const std::u16string& path)
{
    PolicyFileClient file;
    return First({file.Load(path), file.Add(file.NewTask(u"NEW", u"1")), file.RemoveTask(u"P", u"a"),
                  file.RemoveTask(u"NEW", u"1"), file.Write(path + u".out")});
}

constexpr Attack kAttacks[] = {
    {"sections, every one read", Sections, ReadEverySection, result::Success, 2, 2},
    {"sections, one changed", Sections, ChangeProduct, result::Success, 6, 4},
    {"sections, one removed", Sections, RemoveFromProduct, result::Success, 6, 4},
    {"sections of one name, one changed", SectionsOfOneName, ChangeProduct, result::Success, 6, 4},
    {"settings, one changed", SettingsOfOneSection, ChangeProduct, result::Success, 6, 4},
    {"settings of one INI name", SettingsOfOneIniName, LoadOnly, result::Success},
    {"settings of one long INI name", SettingsOfOneLongIniName, LoadOnly, result::Success},
    {"settings, one removed", SettingsOfOneSection, RemoveFromProduct, result::Success, 6, 4},
    {"settings of one name, one changed", SettingsOfOneName, ChangeProduct, result::Success, 6, 4},
    {"deep product changed", DeepProduct, ChangeProduct, result::Success, 6, 4},
    {"huge values put", Sections, PutHugeValues, result::Success, 5, 4},
    {"task of many settings changed", TaskOfManySettings, ChangeTask, result::Success, 6, 4},
    {"task of many sections changed", TaskOfManySections, ChangeTask, result::Success, 6, 4},
    {"long indentation, tasks added", LongIndentation, AddTwoTasks, result::Success, 4, 2},
    {"long indentation, product changed", LongIndentation, ChangeProduct, result::Success, 6, 4},
    {"many tasks, one added and removed", ManyTasks, AddAndRemoveTask, result::Success, 5, 2},
};

}  // namespace

std::span<const Attack> EditAttacks()
{
    return kAttacks;
}

}  // namespace zupm::test
