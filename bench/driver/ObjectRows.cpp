#include "bench/driver/Rows.h"

namespace zupm::bench {

namespace {

constexpr std::size_t kCommon = 16'000'000;
constexpr std::size_t kLarge = 160'000'000;

using MakeWork = Work (*)();

Row ComponentRow(const Setup& setup, const std::string& name, MakeWork work)
{
    return {name, true, [&setup, work] { return ContestOf(setup, work()); }};
}

Work OnManySettings(const char* operation)
{
    return {operation, Heap::Kept, FileOfShape(1, 2000, 1).path, 0};
}

Row LateProductRow(const Setup& setup)
{
    return {"GetPolicy of 40 settings, the last product", false, [&setup] {
                const SampleFile& file = FileOfSize(kLarge);
                return ContestOf(setup, {"get-policy", Heap::Kept, file.path, file.products - 1});
            }};
}

Row TakeAllRow(const Setup& setup)
{
    return {"load 16 MB and take out every product and task", false, [&setup] {
                const SampleFile& file = FileOfSize(kCommon);
                return ContestOf(setup, {"take-all", Heap::Kept, file.path, file.products});
            }};
}

Row WriteRow(const Setup& setup)
{
    return {"WriteFile of 16 MB", true, [&setup] {
                return ContestOf(setup, {"write", Heap::Kept, FileOfSize(kCommon).path}, {"write, fsync, rename"});
            }};
}

Row EditRow(const Setup& setup)
{
    return {"edit and write 16 MB", true, [&setup] {
                return ContestOf(setup, {"edit-and-write", Heap::Kept, FileOfSize(kCommon).path},
                                 {"pugixml full", "libxml2"});
            }};
}

}  // namespace

std::vector<Row> ObjectRows(const Setup& setup)
{
    return {
        ComponentRow(setup, "GetPolicy of 2,000 settings", [] { return OnManySettings("get-policy"); }),
        LateProductRow(setup),
        ComponentRow(setup, "GetSectionSetting", [] { return OnManySettings("get-setting"); }),
        ComponentRow(setup, "PutSectionSetting, existing", [] { return OnManySettings("put-setting"); }),
        ComponentRow(setup, "PutSectionSetting, new, and RemoveSetting",
                     [] { return OnManySettings("put-new-setting"); }),
        ComponentRow(setup, "AddPolicy into 1,000 products",
                     [] {
                         return Work{"add-policy", Heap::Kept, FileOfShape(1000, 20, 1).path, 500};
                     }),
        ComponentRow(setup, "AddTask into 2,000 tasks",
                     [] {
                         return Work{"add-task", Heap::Kept, FileOfShape(10, 20, 2000).path};
                     }),
        ComponentRow(setup, "AddTask into 10,000 tasks",
                     [] {
                         return Work{"add-task", Heap::Kept, FileOfShape(10, 20, 10'000).path};
                     }),
        ComponentRow(setup, "enumerate 10,000 tasks",
                     [] {
                         return Work{"enumerate", Heap::Kept, FileOfShape(10, 20, 10'000).path, 10'000};
                     }),
        TakeAllRow(setup),
        WriteRow(setup),
        ComponentRow(setup, "WriteFileBuffer of 16 MB",
                     [] {
                         return Work{"write-buffer", Heap::Kept, FileOfSize(kCommon).path};
                     }),
        EditRow(setup),
    };
}

}  // namespace zupm::bench
