#include "tools/zupolicy/client/Component.h"

#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {

void CheckCreation(HRESULT result)
{
    try {
        Check(result, {{}, "the component zuPolicyManager64"});
    } catch (const ProblemFailure& failure) {
        Problem problem = failure.What();
        problem.hint = kDoctorHint;
        throw ProblemFailure(problem);
    }
}

}  // namespace zupm::tool
