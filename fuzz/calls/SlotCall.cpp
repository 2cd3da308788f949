#include "fuzz/calls/SlotCall.h"

#include <array>
#include <utility>

#include "com/DispatchThunk.h"
#include "fuzz/calls/Codes.h"
#include "fuzz/calls/Files.h"
#include "fuzz/support/Demand.h"
#include "fuzz/support/SampleTexts.h"
#include "tests/support/Bstr.h"
#include "text/Utf.h"

namespace zupm::fuzz {

namespace {

/// The value or slot of one argument.
class Operand {
public:
    Operand() = default;
    ~Operand()
    {
        SysFreeString(m_text);
        if (m_overwritten != m_text) {
            SysFreeString(m_overwritten);
        }
    }
    Operand(const Operand&) = delete;
    Operand& operator=(const Operand&) = delete;

    [[nodiscard]] Argument Text(std::u16string_view text, bool isNull)
    {
        m_text = isNull ? nullptr : test::NewString(text);
        Argument argument{};
        argument.string = m_text;
        return argument;
    }
    [[nodiscard]] Argument TextSlot(bool isFilled)
    {
        m_text = isFilled ? test::NewString(u"before") : nullptr;
        m_before = m_text;
        return Slot(&m_text);
    }
    [[nodiscard]] Argument NumberSlot() { return Slot(&m_number); }
    [[nodiscard]] Argument ObjectSlot() { return Slot(&m_object); }

    /// The member does not free what its slot holds.
    void OverwritesText() { m_overwritten = m_before; }
    [[nodiscard]] bool HasText() const { return m_text != nullptr; }
    [[nodiscard]] bool IsTextUntouched() const { return m_text == m_before; }
    [[nodiscard]] IUnknown* TakeObject() { return std::exchange(m_object, nullptr); }

private:
    static Argument Slot(void* slot)
    {
        Argument argument{};
        argument.slot = slot;
        return argument;
    }

    BSTR m_text = nullptr;
    BSTR m_before = nullptr;
    BSTR m_overwritten = nullptr;
    LONG m_number = 0;
    IUnknown* m_object = nullptr;
};

Argument NullSlot()
{
    Argument argument{};
    argument.slot = nullptr;
    return argument;
}

class SlotCall {
public:
    SlotCall(Input& input, Objects& objects, const LiveObject& live)
        : m_input(input),
          m_objects(objects),
          m_interfaces(live.interfaces),
          m_description(live.Pick(input)),
          m_member(m_description.members[input.UpTo(m_description.members.size() - 1)])
    {
        Demand(live.object->QueryInterface(m_description.iid, m_object.PutVoid()) == S_OK,
               "an object has its interfaces");
    }

    void Run()
    {
        for (std::size_t i = 0; i < m_member.parameters.size(); ++i) {
            m_arguments[i] = Make(m_member.parameters[i].type, m_operands[i]);
        }
        const HRESULT code = m_member.call(m_object.Get(), m_arguments.data());
        DemandMemberCode(code);
        for (std::size_t i = 0; i < m_member.parameters.size(); ++i) {
            Finish(code, i);
        }
    }

private:
    [[nodiscard]] Argument Make(ParameterType type, Operand& operand)
    {
        constexpr std::uint8_t kOneIn = 15;
        const bool isNull = m_input.UpTo(kOneIn) == kOneIn;
        Argument argument = NullSlot();
        switch (type) {
            case ParameterType::String:
                return operand.Text(TakesPath(m_interfaces, m_member.id) ? MakePath(m_input) : m_input.Text(kTexts),
                                    isNull);
            case ParameterType::Number:
                // Beside a path it may be a time to wait.
                argument.number =
                    isNull && !TakesPath(m_interfaces, m_member.id) ? m_input.Number() : m_input.UpTo<LONG>(1);
                return argument;
            case ParameterType::Object:
                argument.object = m_objects.PickArgument(m_input);
                return argument;
            case ParameterType::StringSlot:
                return isNull ? argument : operand.TextSlot(m_input.Flag());
            case ParameterType::NumberSlot:
                return isNull ? argument : operand.NumberSlot();
            default:
                return isNull ? argument : operand.ObjectSlot();
        }
    }

    void Finish(HRESULT code, std::size_t place)
    {
        const ParameterType type = m_member.parameters[place].type;
        Operand& operand = m_operands[place];
        if (IsSlot(type) && m_arguments[place].slot == nullptr) {
            Demand(code < 0 || MayIgnoreItsSlot(), "a null slot is refused", ToUtf8Lossy(m_member.name));
        } else if (type == ParameterType::StringSlot) {
            FinishText(code, operand);
        } else if (IsSlot(type) && type != ParameterType::NumberSlot) {
            IUnknown* const object = operand.TakeObject();
            Demand((code >= 0) == (object != nullptr) || MayIgnoreItsSlot(), "a success hands an object out");
            m_objects.Adopt(object);
        }
    }

    void FinishText(HRESULT code, Operand& operand)
    {
        if (code < 0) {
            Demand(operand.IsTextUntouched(), "a failure leaves a text slot alone", std::to_string(code));
            return;
        }
        Demand(operand.HasText() || MayLeaveNoText(), "a success hands a text out", ToUtf8Lossy(m_member.name));
        if (m_member.name == u"Version") {
            operand.OverwritesText();
        }
    }

    /// This member always succeeds; callers look at the slot, if they gave one.
    [[nodiscard]] bool MayIgnoreItsSlot() const { return m_member.name == u"CreateTask"; }
    /// And this one gives null when nothing is loaded.
    [[nodiscard]] bool MayLeaveNoText() const { return m_member.name == u"WriteFileBuffer"; }

    Input& m_input;
    Objects& m_objects;
    test::ComPtr<IUnknown> m_object;
    Interfaces m_interfaces;
    const InterfaceDescription& m_description;
    const Member& m_member;
    std::array<Argument, kMostParameters> m_arguments{};
    std::array<Operand, kMostParameters> m_operands;
};

}  // namespace

void CallThroughSlot(Input& input, Objects& objects)
{
    if (LiveObject* const live = objects.Pick(input); live != nullptr) {
        SlotCall(input, objects, *live).Run();
    }
}

}  // namespace zupm::fuzz
