// Reading a parameter section of N parameters (folders and multiparms among them) and turning
// it into templates; 10,000 against 1,000 shows whether the reader stays linear.
#include "host/HostDialogStream.h"
#include "host/HostScriptPage.h"

#include <benchmark/benchmark.h>

#include <string>

namespace
{
std::string section(int n)
{
    std::string text;
    for (int i = 0; i < n; ++i)
    {
        const std::string id = std::to_string(i);
        if (i % 50 == 0)
            text += "group {\n    name \"f" + id + "\"\n    label \"F\"\n";
        if (i % 100 == 7)
            text += "multiparm {\n    name \"m" + id +
                    "\"\n    default 2\n"
                    "    parm { name \"m" +
                    id + "_#\" type float }\n}\n";
        else
            text += "parm {\n    name \"p" + id +
                    "\"\n    label \"P\"\n    type vector\n"
                    "    size 3\n    default { \"0\" \"1\" \"2\" }\n    range { -1 1 }\n"
                    "    parmtag { \"tag\" \"v\" }\n}\n";
        if (i % 50 == 49 || i == n - 1)
            text += "}\n";
    }
    return text;
}

void BM_DialogScriptParse(benchmark::State &state)
{
    const std::string text = section(static_cast<int>(state.range(0)));
    for (auto _ : state)
    {
        HostDialogStream in;
        in.openString(text, "bench.ds");
        HostScriptPage page;
        page.parseSection(in);
        HostSpareLayout layout;
        std::string errors;
        page.buildTemplates(layout, errors);
        benchmark::DoNotOptimize(layout.myTemplates.size());
    }
}
} // namespace

BENCHMARK(BM_DialogScriptParse)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
