// SceneGenerator: random gzsh command lines that change a scene, for the model tests.
#include "SceneGenerator.h"

#include "host/HostCommandParser.h"
#include "host/HostDirector.h"
#include "host/HostNetwork.h"
#include "host/HostNode.h"
#include "host/HostOperatorTable.h"
#include "host/HostParm.h"
#include "host/HostParmList.h"
#include "persistent/GZ_Manager.h"
#include "persistent/GZ_OHLGroup.h"
#include "persistent/GZ_OHLPersistent.h"
#include "persistent/GZ_ScriptOperator.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace
{
std::string quoted(const std::string &word)
{
    return HostCommandParser::protect(word);
}

void collectNodes(const HostNode &node, std::vector<std::string> &paths)
{
    paths.push_back(node.getFullPath());
    if (const HostNetwork *children = node.getChildNetwork())
        for (int i = 0; i < children->getNumNodes(); ++i)
            collectNodes(*children->getNode(i), paths);
}
} // namespace

SceneGenerator::SceneGenerator(unsigned seed, const HostDirector &director, bool with_settings,
                               const std::string &types_dir)
    : myRng(seed), myDirector(director), myWithSettings(with_settings), myTypesDir(types_dir)
{
}

std::string SceneGenerator::next()
{
    // Weights favour the commands that build and change the scene, so that sequences reach
    // scenes with many handles, keys and attachments.
    using Maker = std::string (SceneGenerator::*)();
    static const std::vector<std::pair<int, Maker>> theMakers = {
        {14, &SceneGenerator::nodeCommand},    {14, &SceneGenerator::parmCommand},
        {12, &SceneGenerator::channelCommand}, {24, &SceneGenerator::handleCommand},
        {12, &SceneGenerator::groupCommand},   {12, &SceneGenerator::dragCommand},
        {5, &SceneGenerator::settingsCommand}, {7, &SceneGenerator::readCommand},
        {14, &SceneGenerator::spareCommand},   {6, &SceneGenerator::sequenceTypeCommand}};
    static const int theTotal = []
    {
        int total = 0;
        for (const auto &maker : theMakers)
            total += maker.first;
        return total;
    }();
    for (;;)
    {
        int roll = below(theTotal);
        for (const auto &[weight, maker] : theMakers)
        {
            if (roll < weight)
            {
                std::string line = (this->*maker)();
                if (!line.empty())
                    return line;
                break;
            }
            roll -= weight;
        }
    }
}

std::string SceneGenerator::nodeCommand()
{
    const int kind = below(10);
    if (kind < 5)
    {
        // Objects under /obj, operators inside a geometry object (also with a free name).
        std::vector<std::string> geos;
        for (const std::string &path : nodePaths())
            if (path.rfind("/obj/", 0) == 0 && path.find('/', 5) == std::string::npos)
                geos.push_back(path);
        // Scripted types once they are defined, half of the time.
        if (!geos.empty() && chance(40))
            return "nodeadd " + typeFrom("Sop", {"xform", "box", "sphere", "null"}) + " " +
                   geos[below(static_cast<int>(geos.size()))] + "/" +
                   (chance(50) ? "" : pick({"xform1", "n-2", "sop.a"}));
        return "nodeadd " + typeFrom("Object", {"geo", "geo", "null", "cam"}) + " /obj/" +
               (chance(30) ? "" : pick({"geo1", "geo2", "a", "b_1", "n.3"}));
    }
    if (kind < 8)
        return "nodemv " + nodePath() + " " + pick({"geo1", "geo2", "a", "c", "renamed", "xform1"});
    return "noderm " + nodePath() + (chance(20) ? " " + nodePath() : "");
}

std::string SceneGenerator::parmCommand()
{
    const std::string path = nodePath();
    switch (below(6))
    {
    case 0:
        return "parmset " + path + " " + pick({"t", "r", "s", "p"}) + " " + number() + " " +
               number() + (chance(50) ? " " + number() : "");
    case 1:
        return "parmset " + path + " rOrd " + pick({"zyx", "xzy", "1", "bogus"});
    case 2:
        return "parmset " + path + " group " + quoted(pick({"", "a b", "it's \"q\"", "@x"}));
    case 3:
        return "parmset -e " + path + " " + channel() + " " +
               quoted(pick({"$T*2", "ch(\"tx\")+1", "sin($F)*3", "1/0", "ch(\"../a/ty\")", "10^400",
                            "-10^400", "0/0"}));
    case 4:
        return "parmset -p " + path + " " + channel() + " " + quoted("frame() * 2");
    default:
        return "parmset " + path + " " + channel() + " " + number();
    }
}

std::string SceneGenerator::channelCommand()
{
    const std::string path = nodePath();
    switch (below(6))
    {
    case 0:
        return "chkey " + path + " " + channel() + " " + number() +
               (chance(70) ? " " + number() : "");
    case 1:
        return "chkey " + path + " " + pick({"t", "r"});
    case 2:
        return "chkeyrm " + path + " " + channel() + " " + pick({"0", "1", "0.5"});
    case 3:
        return "chrm " + path + " " + channel();
    case 4:
        return "chcp " + path + "/" + channel() + " " + nodePath() + "/" + channel();
    default:
        return std::string("tcur ") + pick({"0", "0.5", "1", "2.25"});
    }
}

std::string SceneGenerator::handleCommand()
{
    const std::string name = handleName();
    switch (below(9))
    {
    case 0:
    case 1:
        return "pomadd " + (chance(40) ? options() : "") +
               quoted(chance(30) ? hostile() : pick({"h", "h1", "Handle", "x9"})) + " " +
               pick({"xform", "xform", "translate", "rotate", "nosuch"});
    case 2:
    case 3:
    {
        std::string line = "pomattach " +
                           (chance(50) ? "-i " + std::to_string(below(9)) + " " : "") + name + " " +
                           nodePath();
        for (int n = below(4); n > 0; --n)
            line += " " + bindingPair();
        return line;
    }
    case 4:
        return "pomdetach " + name + (chance(60) ? " " + nodePath() : "");
    case 5:
        return "pomclear " + name;
    case 6:
        return "pomremove " + name;
    case 7:
        return "pomset " + options() + name;
    default:
        return "pomrename " + name + " " +
               quoted(chance(30) ? hostile() : pick({"h", "renamed", "x9", "Handle"}));
    }
}

std::string SceneGenerator::groupCommand()
{
    const std::string group = groupName();
    switch (below(8))
    {
    case 0:
        return std::string("pomadd -g ") + (chance(30) ? "-v " : "") +
               quoted(chance(30) ? hostile() : pick({"g", "g1", "all of them"}));
    case 1:
    case 2:
    {
        std::string line = "pomattach -g " + group;
        for (int n = 1 + below(3); n > 0; --n)
            line += " " + handleName();
        return line;
    }
    case 3:
        return "pomdetach -g " + group + " " + handleName();
    case 4:
        return "pomclear -g " + group;
    case 5:
        return "pomremove -g " + group;
    case 6:
        return "pomset -g " + options() + group;
    default:
        return "pomrename -g " + group + " " +
               quoted(chance(30) ? hostile() : pick({"g", "grp", "Group"}));
    }
}

std::string SceneGenerator::dragCommand()
{
    std::string line = std::string("handledrag ") + (chance(50) ? "-k " : "") + "-P " +
                       handleName() + " " +
                       pick({"tx", "ty", "tz", "rx", "ry", "sx", "uniform_scale"});
    for (int n = 1 + below(3); n > 0; --n)
        line += " " + number();
    return line;
}

std::string SceneGenerator::settingsCommand()
{
    if (!myWithSettings)
        return "";
    if (chance(50))
        return "pomparm " + (chance(20) ? "-g " + groupName() : handleName()) + " " +
               quoted(settings());
    return "omparm " + quoted(chance(30) ? hostile() : pick({"xform", "hud"})) + " " +
           quoted(chance(20) ? hostile() : "xform") + " " + nodePath() + " " + quoted(settings());
}

std::string SceneGenerator::readCommand()
{
    switch (below(6))
    {
    case 0:
        return "pomls" + (chance(50) ? " " + handleName() : "");
    case 1:
        return "pomls -g" + (chance(50) ? " " + groupName() : "");
    case 2:
        return chance(50) ? "pomscript -g" : "pomscript";
    case 3:
        return "pomset " + handleName();
    case 4:
        return "handleget -P " + handleName() + " " + pick({"tx", "ty", "rx"});
    default:
        return "chkeyls " + nodePath() + " " + pick({"t", "tx", "r"});
    }
}

std::string SceneGenerator::spareCommand()
{
    const int kind = below(14) - 1;
    // Sections are added anywhere; the other edits go mostly to nodes that have spare
    // parameters, and name them.
    std::vector<std::string> with_spares;
    for (const std::string &live : nodePaths())
        if (spareCount(live) > 0)
            with_spares.push_back(live);
    const std::string path =
        kind < 2 || with_spares.empty() || chance(10)
            ? nodePath()
            : ::quoted(with_spares[below(static_cast<int>(with_spares.size()))]);
    // Else names the sections below give, and the ones a second copy is renamed to.
    const std::string name =
        nameFrom(spareNames(path, /*channels=*/false),
                 {"amt", "on", "word", "f", "v", "pts", "w1", "q", "amt1", "nosuch"});
    switch (kind)
    {
    case -1:
    case 0:
    case 1:
        return "spareadd -s " + path + " " + quoted(spareSection(2, /*distinct=*/false));
    case 2:
        return "sparerm " + path + " " + name +
               (chance(30) ? std::string(" ") + pick({"on", "f"}) : "");
    case 3:
        return "sparemv " + path + " " + name + " " + pick({"-2", "-1", "1", "3"});
    case 4:
        return "sparecompile " + path;
    case 5:
    {
        // Copies double what they copy: past a few dozen entries they only slow the test.
        const std::string source = nodePath();
        if (spareCount(path) + spareCount(source) > 24)
            return "";
        return "sparecopy " + path + " " + source;
    }
    case 8:
        return "sparerename " + path + " " + name + " " +
               quoted(pick({"amt2", "gain", "on1", "w", "t", "it's", "word"}));
    case 9:
    {
        std::string line =
            std::string(chance(25) ? "spareunlink " : "sparelink ") + path + " " + name;
        const std::vector<std::string> live = nodePaths();
        for (int n = 1 + below(2); n > 0; --n)
            line += " " + quoted((live.empty() || chance(10)
                                      ? std::string("/obj/nosuch")
                                      : live[below(static_cast<int>(live.size()))]) +
                                 "/" + pick({"tx", "t", "r", "amt", "word", "ty", "v"}));
        return line;
    }
    case 10:
    {
        const std::vector<std::string> live = nodePaths();
        if (live.empty())
            return "";
        const std::string &from = live[below(static_cast<int>(live.size()))];
        return "parmset -e " + quoted(from) + " " + pick({"tx", "ty", "amt", "word", "vx", "w1"}) +
               " " + quoted(spareReference(from));
    }
    case 11:
    {
        // The callback of a scripted type's toggle, inside its own undo block.
        const std::vector<std::string> scripted = scriptedNodePaths();
        if (scripted.empty())
            return "";
        return "parmset " + quoted(scripted[below(static_cast<int>(scripted.size()))]) + " go " +
               pick({"0", "1"});
    }
    default:
        // The multiparm keeps its one instance: an entry moved into it without "#" in its
        // name would be named alike in every instance, and no by-name record tells them apart.
        return "parmset " + path + " " + pick({"amt", "on", "word", "v", "w1", "q"}) + " " +
               (chance(50) ? number() : quoted(pick({"b", "x y", "it's"})));
    }
}

std::string SceneGenerator::spareSection(int most, bool distinct)
{
    static const char *const thePieces[] = {
        "parm { name \"amt\" label \"Amount\" type float default { \"0.5\" } range { 0! 2 } }",
        "parm { name \"on\" label \"On\" type toggle default { \"1\" } }",
        "parm { name \"word\" label \"Word\" type string default { \"a b\" } "
        "menu { \"a\" \"A\" \"b\" \"B\" } }",
        "group { name \"f\" label \"Tab\" parm { name \"v\" label \"V\" type vector "
        "default { \"1\" \"2\" \"3\" } } }",
        "multiparm { name \"pts\" label \"Points\" default 1 "
        "parm { name \"w#\" label \"W\" type float default { \"1\" } } }",
        "parm { name \"q\" label \"it's \\\"q\\\" $V\" type string default { \"x;y #z\" } }"};
    constexpr int theCount = sizeof(thePieces) / sizeof(thePieces[0]);
    std::string section;
    int used = 0;
    for (int n = 1 + below(most); n > 0; --n)
    {
        int i = below(theCount);
        // A spare section may repeat a piece (the copy is renamed); an operator's own
        // parameters must have distinct names.
        while (distinct && (used & (1 << i)))
            i = (i + 1) % theCount;
        used |= 1 << i;
        section += thePieces[i];
    }
    return section;
}

std::string SceneGenerator::spareReference(const std::string &from)
{
    const std::vector<std::string> live = nodePaths();
    std::string path = live.empty() || chance(10) ? std::string("/obj/nosuch")
                                                  : live[below(static_cast<int>(live.size()))];
    const std::vector<std::string> channels = spareNames(path, /*channels=*/true);
    const std::string channel = !channels.empty() && chance(80)
                                    ? channels[below(static_cast<int>(channels.size()))]
                                    : pick({"amt", "on", "word", "vx", "vz", "w1", "q"});
    // Relative to a sibling ("../geo1/amt") where it is one.
    const size_t slash = path.rfind('/');
    if (chance(40) && path.substr(0, slash) == from.substr(0, from.rfind('/')))
        path = "../" + path.substr(slash + 1);
    const std::string function = channel == "word" || channel == "q" ? "chs" : "ch";
    if (chance(15))
        return function + "(\"" + channel + "\")";
    return function + "(\"" + path + "/" + channel + "\")" + (chance(50) ? "*2" : "");
}

std::string SceneGenerator::typeScript(const std::string &name)
{
    std::string text = "{\n    name\t" + name + "\n    label\t\"" + name + " " +
                       std::to_string(myScripts) + "\"\n";
    if (chance(50))
        text += std::string("    bindhandle amt xform \"Drag\" ") + pick({"tx", "ty", "sx"}) +
                " \"\"\n";
    text += "    " + spareSection(3, /*distinct=*/true) + "\n";
    // A callback that sets another parameter of its node, inside its own undo block.
    if (chance(40))
        text += "    parm { name \"go\" label \"Go\" type toggle default { \"0\" } "
                "parmtag { script_callback \"parmset . amt 1.5\" } "
                "parmtag { script_callback_language command } }\n";
    return text + "}\n";
}

std::string SceneGenerator::typeCommand()
{
    if (myTypesDir.empty())
        return "";
    std::vector<std::string> defined, libraries;
    for (const char *table : {"Object", "Sop"})
        for (const std::string &name : scriptedTypes(table))
            defined.push_back(std::string(table) + "/" + name);
    for (const char *name : {"a.oplib", "b.oplib"})
        if (std::filesystem::exists(myTypesDir + "/" + name))
            libraries.push_back(myTypesDir + "/" + name);
    const int kind = below(5);
    if (defined.empty() || kind < 2)
    {
        // A new definition or a redefinition. Every script gets a file of its own: a saved
        // scene names the file it came from.
        const bool object = chance(30);
        const std::string name = object ? "omop" : pick({"mop", "mop2"});
        const std::string file = myTypesDir + "/t" + std::to_string(++myScripts) + ".ds";
        std::ofstream(file, std::ios::binary) << typeScript(name);
        return std::string("optypeload -t ") + (object ? "Object " : "Sop ") + quoted(file);
    }
    if (libraries.empty() || kind < 4)
        return "optypesave " + nameFrom(defined, {"Sop/nosuch"}) + " " +
               quoted(myTypesDir + "/" + pick({"a.oplib", "b.oplib"}));
    return "libload " + nameFrom(libraries, {"nosuch.oplib"});
}

std::string SceneGenerator::sequenceTypeCommand()
{
    return myTypesInSequence ? typeCommand() : "";
}

std::string SceneGenerator::bindingCommand()
{
    const bool object = chance(33);
    const std::string table = object ? "-t obj " : "-t sop ";
    const std::string op =
        object ? pick({"geo", "null", "cam"}) : pick({"xform", "box", "sphere", "null"});
    switch (below(8))
    {
    case 0:
        return "omunbind " + table + op +
               (chance(50) ? std::string(":") + pick({"tx", "t", "ry"}) : "") +
               (chance(50) ? std::string(" ") + pick({"d1", "d2", "d3"}) : "");
    case 1:
        return "omsunbind " + table + op +
               (chance(50) ? std::string(" ") + pick({"s1", "s2"}) : "");
    case 2:
        // Prompts with blanks, and empty parameters and menus, need quoting in the file.
        return "omsbind " + table + op + ":" + pick({"group", ""}) + " " +
               pick({"everything", "prims", "objselect", "edges"}) + " " +
               pick({"s1", "s2", "'s 3'"}) + " " + pick({"Select", "'Pick it'"}) + " " +
               std::to_string(below(3)) + " " + std::to_string(below(2)) + " " +
               pick({"all", "poly", "''"}) + " " + std::to_string(below(2)) + " " +
               pick({"''", "menu"}) + " " + std::to_string(below(2));
    default:
        // Descriptions differ from the handle names omparm uses: bindings are not part of
        // the scene, so a setting that differs from a binding's defaults only in this
        // process would not be saved by a new one.
        return "ombind " + table + (chance(50) ? "-d " + quoted(settings()) + " " : "") +
               (chance(25) ? quoted(hostile() + " d") : pick({"d1", "d2", "d3"})) + " " + op + ":" +
               pick({"tx", "ty", "tz", "rx", "t", "r", "scale"}) + " " +
               pick({"xform", "translate", "rotate"}) + ":" +
               pick({"tx", "ty", "tz", "rx", "ry", "sx", "uniform_scale"});
    }
}

std::vector<std::string> SceneGenerator::scriptedTypes(const char *table) const
{
    std::vector<std::string> names;
    if (const HostOperatorTable *ops = HostOperatorTable::getTable(table))
        for (int i = 0; i < ops->getNumOperators(); ++i)
            if (dynamic_cast<const GZ_ScriptOperator *>(ops->getOperator(i)))
                names.push_back(ops->getOperator(i)->getName());
    return names;
}

std::vector<std::string> SceneGenerator::scriptedNodePaths() const
{
    std::vector<std::string> paths;
    for (const std::string &path : nodePaths())
        if (dynamic_cast<const GZ_ScriptOperator *>(myDirector.findNode(path)->getOperator()))
            paths.push_back(path);
    return paths;
}

std::vector<std::string> SceneGenerator::spareNames(const std::string &path, bool channels) const
{
    std::vector<std::string> names;
    const HostNode *node = myDirector.findNode(path);
    for (int i = 0; node && i < node->getParmList().getEntries(); ++i)
    {
        const HostParm *parm = node->getParmList().getParm(i);
        if (!parm->isSpare())
            continue;
        if (!channels)
            names.push_back(parm->getName());
        for (int k = 0; channels && k < parm->getVectorSize(); ++k)
            names.push_back(parm->getChannelName(k));
    }
    return names;
}

std::vector<std::string> SceneGenerator::nodePaths() const
{
    std::vector<std::string> paths;
    if (const HostNode *obj = myDirector.findNode("/obj"))
        if (const HostNetwork *children = obj->getChildNetwork())
            for (int i = 0; i < children->getNumNodes(); ++i)
                collectNodes(*children->getNode(i), paths);
    return paths;
}

size_t SceneGenerator::spareCount(const std::string &path) const
{
    const HostNode *node = myDirector.findNode(path);
    return node ? node->getSpareTemplates().size() : 0;
}

std::vector<std::string> SceneGenerator::handleNames() const
{
    std::vector<std::string> names;
    const GZ_Manager *manager = GZgetManager();
    for (int i = 0; i < manager->getNumGZs(); ++i)
        names.push_back(manager->getGZ(i)->getName());
    return names;
}

std::vector<std::string> SceneGenerator::groupNames() const
{
    std::vector<std::string> names;
    const GZ_Manager *manager = GZgetManager();
    for (int i = 0; i < manager->getNumGroups(); ++i)
        names.push_back(manager->getGroup(i)->getName());
    return names;
}

std::string SceneGenerator::typeFrom(const char *table,
                                     std::initializer_list<const char *> built_in)
{
    const std::vector<std::string> scripted = scriptedTypes(table);
    if (!scripted.empty() && chance(50))
        return scripted[below(static_cast<int>(scripted.size()))];
    return pick(built_in);
}

std::string SceneGenerator::nodePath()
{
    return nameFrom(nodePaths(), {"/obj/nosuch", "/obj", "/obj/geo1/xform1"});
}

std::string SceneGenerator::handleName()
{
    return nameFrom(handleNames(), {"h", "nosuch", "Handle1"});
}

std::string SceneGenerator::groupName()
{
    return nameFrom(groupNames(), {"g", "nosuch"});
}

std::string SceneGenerator::channel()
{
    return pick({"tx", "ty", "tz", "rx", "ry", "rz", "sx", "scale", "px"});
}

std::string SceneGenerator::number(bool words)
{
    if (chance(70))
        return pick({"0", "1", "-1", "0.5", "2.25", "3", "-0.125", "10"});
    // Values a scene must still save and load; settings text has no words for them.
    if (chance(5))
        return words ? pick({"inf", "-inf", "1e999"}) : "1e999";
    // Values with every digit in use, to catch numbers that do not read back exactly.
    std::uniform_real_distribution<double> any(-1000.0, 1000.0);
    char text[40];
    std::snprintf(text, sizeof(text), "%.17g", any(myRng));
    return text;
}

std::string SceneGenerator::options()
{
    std::string text;
    if (chance(40))
        text += std::string("-e ") + pick({"on", "off", "0", "2", "no"}) + " ";
    if (chance(30))
        text += std::string("-p ") + pick({"on", "off"}) + " ";
    if (chance(30))
        text += std::string("-c ") + pick({"1", "0"}) + " ";
    if (chance(30))
        text += std::string("-s ") + pick({"ON", "off"}) + " ";
    if (chance(40))
        text += "-r " + number() + " " + number() + " " + number() + " ";
    if (chance(30))
        text += std::string("-m ") + pick({"*", "1", "6"}) + " ";
    return text;
}

std::string SceneGenerator::bindingPair()
{
    const std::string handle_parm = pick({"tx", "ty", "tz", "rx", "ry", "sx", "uniform_scale"});
    switch (below(5))
    {
    case 0:
        return quoted(std::string("{2,0,0,1,") + channel() + "}:" + handle_parm);
    case 1:
        return quoted("!ch(\"ty\")*2:" + handle_parm);
    case 2:
        return std::string("t:") + handle_parm;
    default:
        return channel() + ":" + handle_parm;
    }
}

std::string SceneGenerator::settings()
{
    // Each setting name once: duplicates only exercise the parser's messages.
    std::string text;
    for (int n = below(4), kind = below(4); n > 0; --n, kind = (kind + 1) % 4)
    {
        if (!text.empty())
            text += " ";
        switch (kind)
        {
        case 0:
            text += "color(" + number(false) + " " + number(false) + " " + number(false) + ")";
            break;
        case 1:
            text += std::string("showoppath(") + pick({"0", "1"}) + ")";
            break;
        case 2:
            text += std::string("ownerop('") +
                    pick({"xform1", "a b", "it\\'s", "back\\\\slash", "$V", "q\"x", "a;b #c", ""}) +
                    "')";
            break;
        default:
            // Setting names hold anything but blanks and "(".
            text += pick({"scale", "a$V", "q\"n", "#n", ";n", "b\\s", "it's"});
            text += "(" + number(false) + ")";
            break;
        }
    }
    return text;
}

std::string SceneGenerator::hostile()
{
    return pick({"", "a b", "it's", "q\"d", "$V", "${V}x", "a;b", "#c", "back\\slash", "end\\",
                 "-x", "both ' \" $V"});
}

int SceneGenerator::below(int n)
{
    return std::uniform_int_distribution<int>(0, n - 1)(myRng);
}

const char *SceneGenerator::pick(std::initializer_list<const char *> words)
{
    return words.begin()[below(static_cast<int>(words.size()))];
}

std::string SceneGenerator::nameFrom(const std::vector<std::string> &live,
                                     std::initializer_list<const char *> fresh)
{
    if (!live.empty() && chance(85))
        return quoted(live[below(static_cast<int>(live.size()))]);
    return quoted(pick(fresh));
}
