/// A registry file of the test's own.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "tests/support/Bstr.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

/// Sets an environment variable, or removes it (null), for a scope.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const char* value) : m_name(name)
    {
        const char* old = std::getenv(name);
        m_had = old != nullptr;
        m_old = m_had ? old : "";
        Set(value);
    }
    ~ScopedVariable() { Set(m_had ? m_old.c_str() : nullptr); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    void Set(const char* value) const
    {
        if (value == nullptr) {
            ::unsetenv(m_name);
        } else {
            ::setenv(m_name, value, 1);
        }
    }

    const char* m_name;
    bool m_had = false;
    std::string m_old;
};

/// Every registry function works on a file in a folder of the test's own.
class RegistryTest : public testing::Test {
protected:
    [[nodiscard]] std::string FileName() const { return (m_folder.Folder() / "registry").string(); }

    /// A value, or "(0x...)" with the result when there is none.
    [[nodiscard]] static std::u16string Value(LPCOLESTR key, LPCOLESTR name)
    {
        Bstr value;
        const HRESULT read = ZuRegistryGetValue(key, name, value.Slot());
        EXPECT_EQ(value.Get() == nullptr, read != S_OK);
        return read == S_OK ? value.Text() : u"(none)";
    }

    TempFolder m_folder;
    ScopedVariable m_variable{"ZUREGISTRY", (m_folder.Folder() / "registry").c_str()};
};

}  // namespace zupm::test
