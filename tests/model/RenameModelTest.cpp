// Randomized: scenes of spare parameters referred to from other nodes by relative, absolute
// and bare paths; random renames and removals must leave every referrer with the value it
// had (renames rewrite, removals bake with deletion behaviour 0), and undoing them all must
// give back every expression as it was written.
#include "ModelSeeds.h"
#include "ModelShell.h"

#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostParm.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace
{
struct Component
{
    std::string myNode;
    std::string myChannel;
};

std::string value(ModelShell &sh, const Component &c)
{
    return sh.run("parmget " + c.myNode + " " + c.myChannel);
}

std::string expression(ModelShell &sh, const Component &c)
{
    return sh.run("parmget -e " + c.myNode + " " + c.myChannel);
}
} // namespace

TEST(RenameModel, ReferrersKeepTheirValuesThroughRenamesAndRemovals)
{
    ModelShell &sh = ModelShell::get();
    for (unsigned seed : ModelSeeds::get(1600, 12))
    {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 rng(seed);
        auto pick = [&rng](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
        sh.reset();
        sh.run("parmdeletebehavior 0");
        const int nodes = 3 + pick(3);
        std::vector<std::vector<std::string>> names(nodes);
        for (int n = 0; n < nodes; ++n)
        {
            const std::string path = "/obj/n" + std::to_string(n);
            sh.run("nodeadd geo " + path);
            std::string section;
            for (int p = 0; p < 3; ++p)
            {
                names[n].push_back("p" + std::to_string(p));
                section += "parm { name p" + std::to_string(p) +
                           " label P type float default { " + std::to_string(pick(9) + 1) + " } } ";
            }
            sh.run("spareadd -s " + path + " '" + section + "'");
        }
        // Every node's t, r and s refer to random parameters by one of three path forms.
        std::vector<Component> referrers;
        for (int n = 0; n < nodes; ++n)
            for (const char *channel : {"tx", "ty", "tz", "rx", "ry", "sx"})
            {
                const int to = pick(nodes);
                const std::string parm = "p" + std::to_string(pick(3));
                const std::string path = to == n && pick(2) ? parm
                                         : pick(2) ? "../n" + std::to_string(to) + "/" + parm
                                                   : "/obj/n" + std::to_string(to) + "/" + parm;
                const Component c{"/obj/n" + std::to_string(n), channel};
                sh.run("parmset -e " + c.myNode + " " + channel + " 'ch(\"" + path + "\") * 2 + " +
                       std::to_string(pick(5)) + "'");
                referrers.push_back(c);
            }
        std::vector<std::string> values, texts;
        for (const Component &c : referrers)
        {
            values.push_back(value(sh, c));
            texts.push_back(expression(sh, c));
        }
        const int steps = 6;
        int done = 0;
        for (int step = 0; step < steps; ++step)
        {
            const int n = pick(nodes);
            if (names[n].empty())
                continue;
            ++done;
            const int p = pick(static_cast<int>(names[n].size()));
            const std::string node = "/obj/n" + std::to_string(n);
            if (pick(3) == 0)
            {
                sh.run("sparerm " + node + " " + names[n][p]);
                names[n].erase(names[n].begin() + p);
            }
            else
            {
                const std::string renamed = "q" + std::to_string(step) + names[n][p];
                sh.run("sparerename " + node + " " + names[n][p] + " " + renamed);
                names[n][p] = renamed;
            }
            ASSERT_EQ(sh.takeErrors(), "") << "step " << step;
            for (size_t i = 0; i < referrers.size(); ++i)
                ASSERT_EQ(value(sh, referrers[i]), values[i])
                    << "step " << step << ": " << referrers[i].myNode << "/"
                    << referrers[i].myChannel << " is now " << expression(sh, referrers[i]);
        }
        // Only the edits made: one more undo would take back the referrers' expressions.
        for (int step = 0; step < done; ++step)
            sh.run("undo");
        for (size_t i = 0; i < referrers.size(); ++i)
            ASSERT_EQ(expression(sh, referrers[i]), texts[i]) << referrers[i].myNode;
        EXPECT_EQ(sh.takeErrors(), "");
    }
}

TEST(RenameModel, HandleBindingsFollowRenamesAndUndo)
{
    ModelShell &sh = ModelShell::get();
    sh.reset();
    sh.run("nodeadd geo /obj/geo1; spareadd -s /obj/geo1 'parm { name amp label Amp type float "
           "default { 2 } } parm { name off label Off type vector size 3 default { 0 0 0 } }'");
    sh.run("pomadd h1 xform; pomattach h1 /obj/geo1 amp:tx '{2,0,0,1,offy}:ty' tz:tz");
    auto attach = [&sh]()
    {
        const std::string saved = sh.saved();
        const size_t at = saved.find("pomattach");
        return at == std::string::npos ? saved : saved.substr(at, saved.find('\n', at) - at);
    };
    const std::string before = attach();
    EXPECT_EQ(before, "pomattach -i -1 h1 /obj/geo1 amp:tx {2,0,0,1,offy}:ty tz:tz");
    sh.run("sparerename /obj/geo1 amp gain; sparerename /obj/geo1 off shift");
    EXPECT_EQ(attach(), "pomattach -i -1 h1 /obj/geo1 gain:tx {2,0,0,1,shifty}:ty tz:tz");
    EXPECT_EQ(sh.takeErrors(), "");
    sh.run("sparerm /obj/geo1 gain");
    EXPECT_EQ(attach(), "pomattach -i -1 h1 /obj/geo1 {2,0,0,1,shifty}:ty tz:tz");
    EXPECT_EQ(sh.takeErrors(), "The handle 'h1' loses its binding of 'tx' to '/obj/geo1/gain': "
                               "the parameter has been deleted.\n");
    sh.run("undo; undo; undo");
    EXPECT_EQ(attach(), before);
}
