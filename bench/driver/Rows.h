/// What is measured, in the order of the table.
#pragma once

#include <vector>

#include "bench/driver/Commands.h"

namespace zupm::bench {

/// Loading: regular, irregular and foreign text, several sizes, and the forms of the scanner.
[[nodiscard]] std::vector<Row> LoadRows(const Setup& setup);
/// The objects, and writing.
[[nodiscard]] std::vector<Row> ObjectRows(const Setup& setup);
/// The tool against other tools, start included.
[[nodiscard]] std::vector<Row> ProcessRows(const Setup& setup);
/// The tool against what scripts use: changes, many edits, many files. Whole processes, start included.
[[nodiscard]] std::vector<Row> ToolRows(const Setup& setup);
/// The Python package against Python with lxml.
[[nodiscard]] std::vector<Row> PythonRows(const Setup& setup);

}  // namespace zupm::bench
