/// The option that hides values.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace zupm::tool {

/// Declares --redact, which may be given several times; `patterns` are those that Redaction takes, and must live until
/// the line is parsed.
void AddRedact(CLI::App& line, std::vector<std::string>& patterns);

/// A complaint about JSON. The parser's own end with what it has read last, which may be a value; with `patterns` this
/// is left out.
[[nodiscard]] std::string ComplaintToShow(const std::string& message, const std::vector<std::string>& patterns);

}  // namespace zupm::tool
