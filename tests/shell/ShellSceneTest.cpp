// gzsh pieces that scenarios cannot reach well: number text, argument errors, the catalogue.
#include "shell/ShellScene.h"
#include "host/HostChoiceList.h"
#include "shell/Shell.h"
#include "shell/ShellOperatorCatalog.h"
#include "shell/ShellParmAccess.h"
#include "tests/DiagnosticsRecorder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>

namespace
{
DiagnosticsRecorder theDiagnostics;
} // namespace

TEST(ShellSceneNumbers, ShortestTextReadsBackExactly)
{
    EXPECT_EQ(ShellScene::formatNumber(0.1), "0.1");
    EXPECT_EQ(ShellScene::formatNumber(2), "2");
    EXPECT_EQ(ShellScene::formatNumber(-1.5e-7), "-1.5e-07");
    EXPECT_EQ(ShellScene::formatNumber(1.0 / 3.0), "0.3333333333333333");
    std::mt19937_64 rng(7);
    for (int i = 0; i < 5000; ++i)
    {
        double value;
        std::uint64_t bits = rng();
        std::memcpy(&value, &bits, sizeof(value));
        if (!std::isfinite(value))
            continue;
        std::string text = ShellScene::formatNumber(value);
        ASSERT_EQ(std::strtod(text.c_str(), nullptr), value) << text;
        ASSERT_EQ(ShellScene::formatNumber(std::strtod(text.c_str(), nullptr)), text);
    }
}

TEST(ShellParmWords, NumbersMustFillTheWord)
{
    double v = 0;
    EXPECT_TRUE(ShellParmAccess::parseNumber("-1.5e3", v));
    EXPECT_EQ(v, -1500);
    EXPECT_TRUE(ShellParmAccess::parseNumber(".5", v));
    EXPECT_FALSE(ShellParmAccess::parseNumber("", v));
    EXPECT_FALSE(ShellParmAccess::parseNumber("1x", v));
    EXPECT_FALSE(ShellParmAccess::parseNumber("1 ", v));
    EXPECT_FALSE(ShellParmAccess::parseNumber("1e999", v));
    EXPECT_FALSE(ShellParmAccess::parseNumber("INFINITY", v));
    // The words the scene writer gives non-finite values are numbers.
    EXPECT_TRUE(ShellParmAccess::parseNumber("-inf", v));
    EXPECT_EQ(v, -HUGE_VAL);
    EXPECT_TRUE(ShellParmAccess::parseNumber("nan", v));
    EXPECT_TRUE(std::isnan(v));
}

TEST(ShellArguments, BadUsageExitsWithTwo)
{
    Shell shell;
    theDiagnostics.start();
    const char *unknown[] = {"gzsh", "-x"};
    EXPECT_EQ(shell.main(2, unknown), Shell::STATUS_USAGE);
    const char *missing[] = {"gzsh", "-p"};
    EXPECT_EQ(shell.main(2, missing), Shell::STATUS_USAGE);
    const char *twice[] = {"gzsh", "-c", "echo", "-c", "echo"};
    EXPECT_EQ(shell.main(5, twice), Shell::STATUS_USAGE);
    EXPECT_EQ(theDiagnostics.take(), "gzsh: unknown option -x\n" + std::string(Shell::usageLine()) +
                                         "\ngzsh: option -p needs a value\n" + Shell::usageLine() +
                                         "\ngzsh: -c given twice\n" + Shell::usageLine() + "\n");
}

TEST(ShellCatalogue, NumericParametersAreAnimatableAndNamedPerComponent)
{
    int vectors = 0;
    for (const ShellOperatorSpec &row : ShellOperatorCatalog::entries())
    {
        HostParmTemplateList templates = ShellOperatorCatalog::buildTemplates(row);
        ASSERT_EQ(templates.size(), static_cast<int>(row.parms.size())) << row.name;
        for (int i = 0; i < templates.size(); ++i)
        {
            const HostParmTemplate &tmpl = templates[i];
            if (tmpl.getType().isNumeric())
            {
                EXPECT_TRUE(tmpl.getType().isAnimatable()) << row.name << " " << tmpl.getName();
            }
            if (tmpl.getVectorSize() == 3)
            {
                ++vectors;
                EXPECT_EQ(tmpl.getChannelName(1), tmpl.getName() + "y");
            }
        }
    }
    EXPECT_GT(vectors, 10);

    const ShellOperatorSpec &xform = ShellOperatorCatalog::entries()[3];
    ASSERT_STREQ(xform.name, "xform");
    HostParmTemplateList templates = ShellOperatorCatalog::buildTemplates(xform);
    const HostParmTemplate &order = templates[templates.find("rOrd")];
    ASSERT_NE(order.getChoiceList(), nullptr);
    EXPECT_EQ(order.getChoiceList()->findToken("zyx"), 5);
    EXPECT_EQ(templates[templates.find("s")].getDefault(2).myNumber, 1.0);
}
