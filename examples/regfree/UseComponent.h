/// What both programs do with the component.
#pragma once

#include <string>

/// Prints the interval of a product's policy and the first task of a policy file. Throws std::runtime_error with the
/// step that failed.
void Show(const std::wstring& path);
