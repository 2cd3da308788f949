// Prints the identifiers of classes and interfaces, the ProgIDs and the result codes, one a line.
#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/zuPolicyManager.h>

#include <iostream>
#include <string>

namespace {

struct Identifier {
    const char* name;
    const GUID& value;
};

constexpr Identifier kIdentifiers[] = {
    {"CLSID_TaskInfo", CLSID_TaskInfo},
    {"CLSID_PolicyTask", CLSID_PolicyTask},
    {"CLSID_PolicyProduct", CLSID_PolicyProduct},
    {"CLSID_PolicyFile", CLSID_PolicyFile},
    {"IID_ITaskInfo", IID_ITaskInfo},
    {"IID_IPolicyTask", IID_IPolicyTask},
    {"IID_IPolicyProduct", IID_IPolicyProduct},
    {"IID_IPolicyFile", IID_IPolicyFile},
    {"IID_IPolicyFileEdit", IID_IPolicyFileEdit},
    {"LIBID_ZUPOLICYMANAGERLib", LIBID_ZUPOLICYMANAGERLib},
};

std::string Ascii(const OLECHAR* text)
{
    std::string ascii;
    for (; *text != u'\0'; ++text) {
        ascii.push_back(static_cast<char>(*text));
    }
    return ascii;
}

}  // namespace

int main()
{
    for (const Identifier& row : kIdentifiers) {
        OLECHAR text[39];
        StringFromGUID2(row.value, text, 39);
        std::cout << row.name << " is " << Ascii(text) << '\n';
    }
    for (const OLECHAR* progId : {zupm::kProgIdTaskInfo.c_str(), zupm::kProgIdPolicyTask.c_str(),
                                  zupm::kProgIdPolicyProduct.c_str(), zupm::kProgIdPolicyFile.c_str()}) {
        std::cout << "ProgID " << Ascii(progId) << '\n';
    }
    for (const zupm::result::Meaning& row : zupm::result::kMeanings) {
        std::cout << "code " << row.name << " is " << row.code << '\n';
    }
}
