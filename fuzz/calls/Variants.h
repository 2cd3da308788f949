/// Arguments of calls by name, fitting and unfitting ones.
#pragma once

#include <deque>

#include "fuzz/calls/Objects.h"

namespace zupm::fuzz {

/// Makes variants and owns what they refer to.
///
/// Lifetime  Outlives the call. Objects that were stored into its slots join the script's objects with it.
class Variants {
public:
    /// With `pathsOnly` every text is a path that may be written to.
    Variants(Input& input, Objects& objects, bool pathsOnly)
        : m_input(input), m_objects(objects), m_pathsOnly(pathsOnly)
    {
    }
    ~Variants();
    Variants(const Variants&) = delete;
    Variants& operator=(const Variants&) = delete;

    /// An argument of the parameter's own type, or of one that converts to it.
    [[nodiscard]] VARIANT Fitting(ParameterType type);
    /// An argument of any type.
    [[nodiscard]] VARIANT Any();

private:
    /// What one by-reference argument refers to, and what by-value ones own.
    struct Cell {
        VARIANT variant{};
        BSTR text = nullptr;
        std::int64_t number = 0;
        IUnknown* object = nullptr;
    };

    [[nodiscard]] VARIANT Text();
    [[nodiscard]] VARIANT Object(VARTYPE type);
    [[nodiscard]] VARIANT ByReference(VARTYPE type);
    [[nodiscard]] static void* PlaceIn(Cell& cell, VARTYPE type);

    Input& m_input;
    Objects& m_objects;
    bool m_pathsOnly;
    std::deque<Cell> m_cells;
};

}  // namespace zupm::fuzz
