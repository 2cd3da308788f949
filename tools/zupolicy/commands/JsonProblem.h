/// Failures of a command that prints JSON.
#pragma once

#include "tools/zupolicy/report/JsonWriter.h"
#include "tools/zupolicy/report/Problem.h"
#include "tools/zupolicy/report/Streams.h"

namespace zupm::tool {

/// Calls `work`. What it throws is printed as JSON when that is wanted, and thrown again. `file` is the one that is
/// worked on.
template <class Work>
auto WithJsonProblem(bool isJson, Streams streams, const std::string& file, const Work& work)
{
    try {
        return work();
    } catch (const std::exception&) {
        if (isJson) {
            JsonWriter json(streams.data);
            json.BeginObject();
            json.Key("schema").Number(1);
            WriteProblem(json, CurrentProblem(file));
            json.EndObject();
        }
        throw;
    }
}

}  // namespace zupm::tool
