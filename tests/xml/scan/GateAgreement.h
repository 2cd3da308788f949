/// The scanner beside the gate that it must agree with.
#pragma once

#include <string>
#include <string_view>

namespace AdvXMLParser {

/// What the two make of one text.
struct Agreement {
    bool isAcceptedByScanner = false;
    bool isAcceptedByGate = false;
    /// Why they do not agree; empty when they do. They agree when the gate accepts all that the scanner accepts, with
    /// the same records, and every form of the scanner in pieces of any size does the same.
    std::string difference;

    /// Whether the gate accepts what the scanner passes on, for no reason that is known: no DOCTYPE.
    bool isPassedOnNeedlessly = false;
};

/// Reads a text as UTF-8 with the scanner, in every form that this processor has, and with the gate.
[[nodiscard]] Agreement CompareWithGate(const std::string& text);

}  // namespace AdvXMLParser
