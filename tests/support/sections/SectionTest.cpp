#include "tests/support/sections/SectionTest.h"

#include <ostream>
#include <stdexcept>

namespace zupm::test {

namespace {

constexpr std::string_view kBeforeProduct = "<File>\n<PolicyRoot>\n<PolicyGroup>\n<Policy>\n<Product SoftwareID=\"S\">";
constexpr std::string_view kAfterProduct =
    "</Product>\n</Policy>\n</PolicyGroup>\n</PolicyRoot>\n<TaskRoot/>\n</File>\n";
constexpr std::string_view kBeforeTask =
    "<File>\n<PolicyRoot>\n<PolicyGroup>\n<Policy/>\n</PolicyGroup>\n</PolicyRoot>\n<TaskRoot>\n"
    "<TaskGroup SoftwareID=\"S\" TaskID=\"T\">\n<Task>";
constexpr std::string_view kAfterTask = "</Task>\n</TaskGroup>\n</TaskRoot>\n</File>\n";

void Check(HRESULT code, const char* what)
{
    if (code != S_OK) {
        throw std::runtime_error(std::string(what) + " failed with " + std::to_string(code));
    }
}

ComPtr<IDispatch> Fetch(IPolicyFile& file, ObjectKind kind, const std::u16string& softwareId, const Bstr& taskId)
{
    ComPtr<IUnknown> object;
    const Bstr software(softwareId);
    Check(kind == ObjectKind::Product ? file.GetPolicy(software.Get(), object.Put())
                                      : file.GetTask(software.Get(), taskId.Get(), object.Put()),
          "fetching the object");
    return object.Query<IDispatch>();
}

}  // namespace

void PrintTo(const Read& read, std::ostream* out)
{
    *out << read.code << " \"" << Utf8(read.text) << '"';
}

void PrintTo(const SectionCase& row, std::ostream* out)
{
    *out << row.label;
}

SectionTest::SectionTest()
{
    if (GetParam().kind == ObjectKind::Product) {
        Use(Create<IPolicyProduct>().Query<IDispatch>());
    } else {
        Use(Create<IPolicyTask>().Query<IDispatch>());
    }
}

void SectionTest::Use(ComPtr<IDispatch> object)
{
    m_object = CallsOf(GetParam().kind, GetParam().form, object);
    m_dispatch = std::move(object);
}

void SectionTest::Load(std::string_view inner)
{
    const bool product = GetParam().kind == ObjectKind::Product;
    const Bstr path(m_folder.Write(u"policy.xml", std::string(product ? kBeforeProduct : kBeforeTask)
                                                      .append(inner)
                                                      .append(product ? kAfterProduct : kAfterTask)));
    const ComPtr<IPolicyFile> file = Create<IPolicyFile>();
    Check(file->InitializeFile(path.Get(), 1), "loading");
    Use(Fetch(*file.Get(), GetParam().kind, u"S", u"T"));
}

void SectionTest::PassThroughFile()
{
    const Bstr path(m_folder.Write(u"passing.xml", std::string(kBeforeTask).append(kAfterTask)));
    const Bstr written(m_folder.Path(u"passed.xml"));
    const ComPtr<IPolicyFile> file = Create<IPolicyFile>();
    Check(file->InitializeFile(path.Get(), 0), "loading");
    Bstr softwareId;
    Bstr taskId(u"T");
    if (GetParam().kind == ObjectKind::Product) {
        const auto product = m_dispatch.Query<IPolicyProduct>();
        Check(product->get_SoftwareID(softwareId.Slot()), "reading the identifier");
        Check(file->AddPolicy(product.Get(), 1), "adding");
    } else {
        const auto task = m_dispatch.Query<IPolicyTask>();
        Check(task->get_SoftwareID(softwareId.Slot()), "reading the identifier");
        Check(task->get_TaskID(taskId.Slot()), "reading the identifier");
        Check(file->AddTask(task.Get(), 1), "adding");
    }
    Check(file->WriteFile(written.Get(), 0), "writing");
    Check(file->InitializeFile(written.Get(), 1), "loading what was written");
    Use(Fetch(*file.Get(), GetParam().kind, softwareId.Text(), taskId));
}

Read SectionTest::Get(const Bstr& section, const Bstr& name)
{
    OutText value;
    const HRESULT code = m_object->GetSectionSetting(section, name, value);
    return {code, value.Untouched() ? u"(untouched)" : value.Text()};
}

Read SectionTest::GetCurrent(const Bstr& name)
{
    OutText value;
    const HRESULT code = m_object->GetSetting(name, value);
    return {code, value.Untouched() ? u"(untouched)" : value.Text()};
}

Read SectionTest::GetStored(const Bstr& section, const Bstr& name)
{
    OutText value;
    const HRESULT code = m_object->GetStoredSetting(section, name, value);
    return {code, value.Untouched() ? u"(untouched)" : value.Text()};
}

Read SectionTest::TakenVersion()
{
    OutText value;
    const HRESULT code = m_object->GetTakenVersion(value);
    return {code, value.Untouched() ? u"(untouched)" : value.Text()};
}

Listed SectionTest::SectionNames()
{
    OutObject<IPolicyNames> slot;
    return Taken(m_object->GetSectionNames(slot), slot);
}

Listed SectionTest::SettingNames(const Bstr& section)
{
    OutObject<IPolicyNames> slot;
    return Taken(m_object->GetSettingNames(section, slot), slot);
}

std::string SectionTest::Data()
{
    OutText value;
    Check(m_object->GetData(value), "reading the XML text");
    return Utf8(value.Text());
}

std::string SectionTest::Inner(std::string_view startTag, std::string_view endTag)
{
    const std::string data = Data();
    const std::size_t start = data.find(startTag);
    const std::size_t end = start == std::string::npos ? start : data.find(endTag, start);
    return end == std::string::npos ? "(none)" : data.substr(start + startTag.size(), end - start - startTag.size());
}

std::vector<SectionCase> AllForms(ObjectKind kind)
{
    return {{"ThroughSlots", kind, CallForm::Slot},
            {"ByNameWithReferences", kind, CallForm::ByReference},
            {"ByNameForResults", kind, CallForm::ForResult}};
}

std::string SectionCaseName(const testing::TestParamInfo<SectionCase>& info)
{
    return info.param.label;
}

}  // namespace zupm::test
