/// The option that hides values.
#pragma once

#include <functional>
#include <string>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/report/Redaction.h"
#include "tools/zupolicy/report/Streams.h"

namespace CLI {
class App;
}

namespace zupm::tool {

/// Declares --redact, which may be given several times. `hidden` must live until the line is parsed.
void AddRedact(CLI::App& line, Redaction& hidden);

/// Runs the command, and then names each pattern that hid none of the values that the command asked about: it may be
/// mistyped. Nothing is said when the command asked about none, is quiet, or fails with an exception.
[[nodiscard]] ExitCode Hiding(const Redaction& hidden, Streams streams, const std::function<ExitCode()>& run,
                              bool isQuiet = false);

/// A complaint about JSON. The parser's own end with what it has read last, which may be a value; when values are
/// hidden this is left out.
[[nodiscard]] std::string ComplaintToShow(const std::string& message, const Redaction& hidden);

}  // namespace zupm::tool
