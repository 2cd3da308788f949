/// Policy files of known size and shape, made once a run in a temporary folder.
#pragma once

#include <cstddef>
#include <string>

namespace zupm::bench {

struct SampleFile {
    std::string path;
    int products = 0;
};

/// A file of that many bytes or a little more: products of 40 settings each, and tasks. Made at the first call.
[[nodiscard]] const SampleFile& FileOfSize(std::size_t bytes, bool asUtf16 = false);

/// A file with that many products (of `settings` settings in sections of 50) and tasks.
[[nodiscard]] const SampleFile& FileOfShape(int products, int settings, int tasks);

/// Lengths, indentation and order by chance; comments, references and empty tags. The same bytes in every run.
[[nodiscard]] const SampleFile& IrregularFile(std::size_t bytes);

/// Of the words in its values, 70 in 100 are not ASCII: two and three bytes a character.
[[nodiscard]] const SampleFile& ForeignWordsFile(std::size_t bytes);

/// A copy of a file that an operation may replace.
[[nodiscard]] std::string ScratchCopyOf(const SampleFile& file);

}  // namespace zupm::bench
