/// Settings of one product or task that all threads share.
#pragma once

#include <array>
#include <map>

#include "MixStep.h"
#include "tests/support/sections/SectionMembers.h"

namespace zupm::test {

/// One thread's part: sections of its own, of which it knows every setting, and one that all threads change.
///
/// Every call is made in a random form: through its slot, by name with an out argument, by name for a result.
class MixSections {
public:
    MixSections(ObjectKind kind, const ComPtr<IDispatch>& object, int thread, Random& random);

    [[nodiscard]] std::vector<MixStep> Steps();
    /// Finds every setting of its own again, and none that it removed.
    void Check();
    /// Whether every value of its own is in the text.
    [[nodiscard]] bool IsAllIn(std::u16string_view text) const;

private:
    using Settings = std::map<std::u16string, std::u16string>;

    void PutOwn();
    void GetOwn(const std::u16string& section, const std::u16string& name);
    void RemoveOwnSetting();
    void RemoveOwnSection();
    void PutShared();
    void GetShared();
    void RemoveShared();
    void ChooseSection();
    void PutCurrent();
    void GetCurrent();
    void GetData();
    void List();

    /// The calls in a form of the dice's choice; a failure must leave its sentence and a success none.
    template <class Call>
    HRESULT In(Call call);
    [[nodiscard]] std::u16string AnySection() { return m_sections[Pick(*m_random, 2)]; }
    [[nodiscard]] std::u16string AnyName() { return Numbered(u"n", Pick(*m_random, 4)); }
    /// What looking for one of its own settings must give.
    [[nodiscard]] HRESULT Expected(const std::u16string& section, const std::u16string& name) const;

    ObjectKind m_kind;
    std::vector<std::unique_ptr<SectionMembers>> m_forms;
    std::array<std::u16string, 2> m_sections;
    std::map<std::u16string, Settings> m_own;
    Random* m_random;
    int m_values = 0;
};

}  // namespace zupm::test
