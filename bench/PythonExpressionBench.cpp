// Benchmarks of a one-line Python parameter expression against the same host expression.
#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostOperatorTable.h"
#include "host/HostParm.h"

#if GZ_WITH_PYTHON
#include "python/HostPython.h"
#endif

#include <benchmark/benchmark.h>

namespace
{
/// A node whose tx holds `text` in `language`, read at a new time on every iteration.
void evaluateExpression(benchmark::State &state, const char *text, HostStringMeaning language)
{
    HostDirector director;
    director.makeCurrent();
    HostOperatorTable *table = HostOperatorTable::getTable("Object");
    if (!table->getOperator("benchexpr"))
        table->addOperator("benchexpr", "Bench Expr",
                           {HostParmTemplate(HOST_PARM_XYZ, "t", "Translate", 3)}, "");
    HostNode *node = director.createNode("benchexpr", "/obj/e");
    HostParm &tx = *node->getParm("t");
    tx.setExpression(0, text, language);
    std::string error;
    double t = 0.0;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(tx.evalFloat(0, t, error));
        t += 0.01;
    }
    // The last value must be the expression's, or the run measured a failure.
    const double last = tx.evalFloat(0, 2.0, error);
    if (!error.empty() || last != 21.0)
        state.SkipWithError(error.empty() ? "wrong value" : error.c_str());
}
} // namespace

static void BM_ParmExpressionHost(benchmark::State &state)
{
    evaluateExpression(state, "$T * 10 + 1", HOST_STRING_EXPRESSION);
}
BENCHMARK(BM_ParmExpressionHost);

#if GZ_WITH_PYTHON
static void BM_ParmExpressionPython(benchmark::State &state)
{
    if (!HostPython::start())
    {
        state.SkipWithError("the interpreter did not start");
        return;
    }
    evaluateExpression(state, "time() * 10 + 1", HOST_STRING_SCRIPT);
}
BENCHMARK(BM_ParmExpressionPython);
#endif
