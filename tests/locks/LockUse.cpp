#include "tests/locks/LockUse.h"

#include <algorithm>

#include "platform/CriticalSection.h"

namespace zupm::test {

namespace {

thread_local std::vector<const CCriticalSection*> t_held;  ///< once for each time that it was entered
thread_local std::vector<LockEntry>* t_entries = nullptr;

void NoteEntry(const CCriticalSection* section)
{
    if (t_entries != nullptr && !IsHeld(section)) {
        t_entries->push_back({section, t_held});
    }
    t_held.push_back(section);
}

void NoteLeaving(const CCriticalSection* section)
{
    const auto last = std::find(t_held.rbegin(), t_held.rend(), section);
    if (last != t_held.rend()) {
        t_held.erase(std::next(last).base());
    }
}

}  // namespace

LockUse::LockUse()
{
    t_entries = new std::vector<LockEntry>;
}

LockUse::~LockUse()
{
    delete t_entries;
    t_entries = nullptr;
}

const std::vector<LockEntry>& LockUse::Entries() const
{
    return *t_entries;
}

bool LockUse::Entered(const CCriticalSection* section) const
{
    return std::ranges::any_of(Entries(), [&](const LockEntry& entry) { return entry.section == section; });
}

bool IsHeld(const CCriticalSection* section)
{
    return std::ranges::find(t_held, section) != t_held.end();
}

}  // namespace zupm::test

// CCriticalSection::Enter and Leave under the names that --wrap gives them; the compilers of both targets name members
// alike.
extern "C" {

void __real__ZN4zupm16CCriticalSection5EnterEv(zupm::CCriticalSection* section);
void __real__ZN4zupm16CCriticalSection5LeaveEv(zupm::CCriticalSection* section);
void __wrap__ZN4zupm16CCriticalSection5EnterEv(zupm::CCriticalSection* section);
void __wrap__ZN4zupm16CCriticalSection5LeaveEv(zupm::CCriticalSection* section);

void __wrap__ZN4zupm16CCriticalSection5EnterEv(zupm::CCriticalSection* section)
{
    __real__ZN4zupm16CCriticalSection5EnterEv(section);
    zupm::test::NoteEntry(section);
}

void __wrap__ZN4zupm16CCriticalSection5LeaveEv(zupm::CCriticalSection* section)
{
    zupm::test::NoteLeaving(section);
    __real__ZN4zupm16CCriticalSection5LeaveEv(section);
}

}  // extern "C"
