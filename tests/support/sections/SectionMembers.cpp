#include "tests/support/sections/SectionMembers.h"

#include "tests/support/ErrorInfo.h"
#include "tests/support/MemberCall.h"

namespace zupm::test {

namespace {

HRESULT GetDataOf(IPolicyProduct& product, BSTR* slot)
{
    return product.get_PolicyData(slot);
}

HRESULT GetDataOf(IPolicyTask& task, BSTR* slot)
{
    return task.get_TaskData(slot);
}

/// Through the interface's slots.
template <class Interface>
class SlotCalls final : public SectionMembers {
public:
    explicit SlotCalls(ComPtr<Interface> object) : m_object(std::move(object)) {}

    HRESULT PutSection(const Bstr& section) override { return Note(m_object->put_Section(section.Get())); }
    HRESULT GetSetting(const Bstr& name, OutText& value) override
    {
        return Note(m_object->GetSetting(name.Get(), value.Slot()));
    }
    HRESULT PutSetting(const Bstr& name, const Bstr& value) override
    {
        return Note(m_object->PutSetting(name.Get(), value.Get()));
    }
    HRESULT GetSectionSetting(const Bstr& section, const Bstr& name, OutText& value) override
    {
        return Note(m_object->GetSectionSetting(section.Get(), name.Get(), value.Slot()));
    }
    HRESULT PutSectionSetting(const Bstr& section, const Bstr& name, const Bstr& value) override
    {
        return Note(m_object->PutSectionSetting(section.Get(), name.Get(), value.Get()));
    }
    HRESULT RemoveSetting(const Bstr& section, const Bstr& name) override
    {
        return Note(m_object->RemoveSetting(section.Get(), name.Get()));
    }
    HRESULT RemoveSection(const Bstr& section) override { return Note(m_object->RemoveSection(section.Get())); }
    HRESULT GetSectionNames(OutObject<IPolicyNames>& names) override
    {
        return Note(Sections()->get_SectionNames(names.Slot()));
    }
    HRESULT GetSettingNames(const Bstr& section, OutObject<IPolicyNames>& names) override
    {
        return Note(Sections()->GetSettingNames(section.Get(), names.Slot()));
    }
    HRESULT GetStoredSetting(const Bstr& section, const Bstr& name, OutText& value) override
    {
        return Note(Sections()->GetStoredSetting(section.Get(), name.Get(), value.Slot()));
    }
    HRESULT GetTakenVersion(OutText& value) override { return Note(Sections()->get_TakenVersion(value.Slot())); }
    HRESULT GetData(OutText& value) override { return Note(GetDataOf(*m_object.Get(), value.Slot())); }

private:
    [[nodiscard]] ComPtr<IPolicySections> Sections() const { return m_object.template Query<IPolicySections>(); }
    HRESULT Note(HRESULT code)
    {
        m_failure = TakeErrorInformation().description;
        return code;
    }

    ComPtr<Interface> m_object;
};

/// By name.
class NamedCalls final : public SectionMembers {
public:
    NamedCalls(ComPtr<IDispatch> object, ObjectKind kind, bool byReference)
        : m_object(std::move(object)), m_kind(kind), m_byReference(byReference)
    {
    }

    HRESULT PutSection(const Bstr& section) override
    {
        return Note(MemberCall(m_object.Get(), u"Section").In(section).Put());
    }
    HRESULT GetSetting(const Bstr& name, OutText& value) override
    {
        MemberCall call(m_object.Get(), u"GetSetting");
        return Fetch(call.In(name), value);
    }
    HRESULT PutSetting(const Bstr& name, const Bstr& value) override
    {
        return Note(MemberCall(m_object.Get(), u"PutSetting").In(name).In(value).Call());
    }
    HRESULT GetSectionSetting(const Bstr& section, const Bstr& name, OutText& value) override
    {
        MemberCall call(m_object.Get(), u"GetSectionSetting");
        return Fetch(call.In(section).In(name), value);
    }
    HRESULT PutSectionSetting(const Bstr& section, const Bstr& name, const Bstr& value) override
    {
        return Note(MemberCall(m_object.Get(), u"PutSectionSetting").In(section).In(name).In(value).Call());
    }
    HRESULT RemoveSetting(const Bstr& section, const Bstr& name) override
    {
        return Note(MemberCall(m_object.Get(), u"RemoveSetting").In(section).In(name).Call());
    }
    HRESULT RemoveSection(const Bstr& section) override
    {
        return Note(MemberCall(m_object.Get(), u"RemoveSection").In(section).Call());
    }
    HRESULT GetSectionNames(OutObject<IPolicyNames>& names) override
    {
        return Take(MemberCall(m_object.Get(), u"SectionNames").Get(), names);
    }
    HRESULT GetSettingNames(const Bstr& section, OutObject<IPolicyNames>& names) override
    {
        MemberCall call(m_object.Get(), u"GetSettingNames");
        call.In(section);
        return m_byReference ? Note(call.Out(names).Call()) : Take(call.ForResult(), names);
    }
    HRESULT GetStoredSetting(const Bstr& section, const Bstr& name, OutText& value) override
    {
        MemberCall call(m_object.Get(), u"GetStoredSetting");
        return Fetch(call.In(section).In(name), value);
    }
    HRESULT GetTakenVersion(OutText& value) override
    {
        return Take(MemberCall(m_object.Get(), u"TakenVersion").Get(), value);
    }
    HRESULT GetData(OutText& value) override
    {
        MemberCall call(m_object.Get(), m_kind == ObjectKind::Product ? u"PolicyData" : u"TaskData");
        return Take(call.Get(), value);
    }

private:
    HRESULT Fetch(MemberCall& call, OutText& value)
    {
        return m_byReference ? Note(call.Out(value).Call()) : Take(call.ForResult(), value);
    }
    HRESULT Take(const CallOutcome& outcome, OutText& value)
    {
        if (outcome.code == S_OK) {
            value.Assign(outcome.text);
        }
        return outcome.code == S_OK && outcome.type != VT_BSTR ? DISP_E_TYPEMISMATCH : Note(outcome);
    }
    HRESULT Take(const CallOutcome& outcome, OutObject<IPolicyNames>& names)
    {
        if (outcome.code == S_OK) {
            names.Store(outcome.object.Query<IPolicyNames>().Detach());
        }
        return outcome.code == S_OK && outcome.type != VT_DISPATCH ? DISP_E_TYPEMISMATCH : Note(outcome);
    }
    HRESULT Note(const CallOutcome& outcome)
    {
        m_failure = outcome.description;
        return outcome.code;
    }

    ComPtr<IDispatch> m_object;
    ObjectKind m_kind;
    bool m_byReference;
};

}  // namespace

std::unique_ptr<SectionMembers> CallsOf(ObjectKind kind, CallForm form, ComPtr<IDispatch> object)
{
    if (form != CallForm::Slot) {
        return std::make_unique<NamedCalls>(std::move(object), kind, form == CallForm::ByReference);
    }
    if (kind == ObjectKind::Product) {
        return std::make_unique<SlotCalls<IPolicyProduct>>(object.Query<IPolicyProduct>());
    }
    return std::make_unique<SlotCalls<IPolicyTask>>(object.Query<IPolicyTask>());
}

}  // namespace zupm::test
