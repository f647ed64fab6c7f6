// Benchmarks of the host's value path: channel evaluation, expressions and references.
#include "host/HostChannel.h"
#include "host/HostDirector.h"
#include "host/HostExpression.h"
#include "host/HostNode.h"
#include "host/HostOperatorTable.h"
#include "host/HostParm.h"

#include <benchmark/benchmark.h>

namespace
{
/// A director with two nodes of a private operator type holding a translate vector.
struct Scene
{
    Scene()
    {
        director.makeCurrent();
        HostOperatorTable *table = HostOperatorTable::getTable("Object");
        if (!table->getOperator("benchgeo"))
            table->addOperator("benchgeo", "Bench Geo",
                               {HostParmTemplate(HOST_PARM_XYZ, "t", "Translate", 3)}, "");
        a = director.createNode("benchgeo", "/obj/a");
        b = director.createNode("benchgeo", "/obj/b");
    }
    HostDirector director;
    HostNode *a = nullptr;
    HostNode *b = nullptr;
};
} // namespace

static void BM_ChannelEvaluate(benchmark::State &state)
{
    HostChannel channel;
    for (int i = 0; i < state.range(0); ++i)
        channel.setKey(i / 24.0, i % 7);
    double t = 0.0;
    const double end = state.range(0) / 24.0;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(channel.evaluate(t));
        t += 0.013;
        if (t > end)
            t = 0.0;
    }
}
BENCHMARK(BM_ChannelEvaluate)->Arg(10)->Arg(10000);

static void BM_ExpressionParseAndEvaluate(benchmark::State &state)
{
    HostExprTimeContext context(1.5);
    std::string error;
    for (auto _ : state)
    {
        HostExpression expr("sin($T * 90) * 2 + max(1, $F / 3) - (4 ^ 0.5)");
        benchmark::DoNotOptimize(expr.evaluateNumber(context, error));
    }
}
BENCHMARK(BM_ExpressionParseAndEvaluate);

static void BM_ParmExpressionWithReference(benchmark::State &state)
{
    Scene scene;
    HostParm *ta = scene.a->getParm("t");
    HostParm *tb = scene.b->getParm("t");
    ta->setKey(0, 0.0, 1.0);
    ta->setKey(0, 1.0, 3.0);
    tb->setExpression(0, "ch(\"../a/tx\") * 2 + $T");
    double t = 0.0;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(tb->evalFloat(0, t));
        t = t > 1.0 ? 0.0 : t + 0.01;
    }
}
BENCHMARK(BM_ParmExpressionWithReference);

static void BM_HandleWriteOnKey(benchmark::State &state)
{
    Scene scene;
    HostParm *ta = scene.a->getParm("t");
    ta->setKey(0, 0.0, 1.0);
    double v = 0.0;
    for (auto _ : state)
    {
        ta->setValue(0, 0.0, v, /*setKey=*/true, /*propagate=*/false);
        v += 1.0;
    }
}
BENCHMARK(BM_HandleWriteOnKey);
